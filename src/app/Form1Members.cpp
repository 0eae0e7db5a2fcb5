#include "app/Form1Controls.h"

void Form1Controls::NameMembers()
{
    const Form1Controls& c = *this;
    OrbVac = OrbVacuum(c[::OrbVac]);
    nTab = OrbTab(c[::nTab]);
    for (std::size_t i = 0; i < fraTabs.size(); ++i) fraTabs[i] = c[::fraTabs[i]];
    lblOEFolder = OrbLabel(c[::lblOEFolder]);
    capSync = OrbLabel(c[::capSync]);
    lblStoreFolder = OrbLabel(c[::lblStoreFolder]);
    lblStorePath = OrbLabel(c[::lblStorePath]);
    lblCount = OrbLabel(c[::lblCount]);
    lblPerSecond = OrbLabel(c[::lblPerSecond]);
    lblTime = OrbLabel(c[::lblTime]);
    lblLeft = OrbLabel(c[::lblLeft]);
    lblTotalCount = OrbLabel(c[::lblTotalCount]);
    lblTotalLeft = OrbLabel(c[::lblTotalLeft]);
    lblTotalTime = OrbLabel(c[::lblTotalTime]);
    cmdOpenFolder = OrbSimpleButton(c[::cmdOpenFolder]);
    cmdSync = OrbSimpleButton(c[::cmdSync]);
    cmdGetID = OrbSimpleButton(c[::cmdGetID]);
    cmdChooseStore = OrbSimpleButton(c[::cmdChooseStore]);
    cmdCheckFolder = OrbSimpleButton(c[::cmdCheckFolder]);
    cmdCheckAllFolders = OrbSimpleButton(c[::cmdCheckAllFolders]);
    cmdExport = OrbSimpleButton(c[::cmdExport]);
    cmdSaveAll = OrbSimpleButton(c[::cmdSaveAll]);
    cmdUseSelection = OrbSimpleButton(c[::cmdUseSelection]);
    cmdStopAfterEmail = OrbSimpleButton(c[::cmdStopAfterEmail]);
    cmdStopAfterFolder = OrbSimpleButton(c[::cmdStopAfterFolder]);
    cmdNewFolder = OrbSimpleButton(c[::cmdNewFolder]);
    tvOETree = c[::tvOETree];
    cboComparison = c[::cboComparison];
    txtIgnore = c[::txtIgnore];
    chkJumpRemain = c[::chkJumpRemain];
    chkSkipFiles = c[::chkSkipFiles];
    chkIDonly = c[::chkIDonly];
    chkSendKeys = c[::chkSendKeys];
    Drive1 = c[::Drive1];
    Dir1 = c[::Dir1];
    fileCheck = c[::fileCheck];
    lstProgress = c[::lstProgress];
    lvResults = c[::lvResults];
    txtSummary = c[::txtSummary];
    lstTree = c[::lstTree];
    lstLines = c[::lstLines];
}
