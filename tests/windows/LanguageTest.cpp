// LanguageTest.cpp: the stand-in speaking other languages than English.
#include "app/ColumnsIds.h"
#include "tests/windows/MailRun.h"

namespace {

const std::string kGermanTitles =
    "[Captions]\r\nFrom=Von\r\nSubject=Betreff\r\nTo=An\r\nReceived=Erhalten\r\nSent=Gesendet\r\n";
const std::string kFrench = // in the code page 1252
    "[Captions]\r\nFrom=De\r\nSubject=Objet\r\nTo=\xC0\r\nReceived=Re\xE7u\r\nSent=Envoy\xE9\r\n"
    "Folders=Dossiers\r\nFolder List=Liste des dossiers\r\nSave Message As=Enregistrer le message sous\r\n"
    "Save=&Enregistrer\r\nCancel=Annuler\r\n";

TEST_F(MailRun, ColumnsAreNamedByTheirBoxAlone)
{
    AddFolder(L"Inbox", 1);
    ASSERT_TRUE(StartDemoClient(client, program.Folder(), L"--language=de"));
    StartedProcess quillbox(L"\"" + program.Folder() + L"quillbox.exe\" /captions", program.Folder());
    const HWND box = WaitForWindow(quillbox.Id(), L"#32770", L"Columns of the message list", kPatience);
    HWND list = GetDlgItem(box, ID_FIRST_COLUMN);
    for (const wchar_t* title : {L"Von", L"Betreff", L"An", L"Erhalten", L"Gesendet"}) {
        const LRESULT place =
            SendMessageW(list, CB_FINDSTRINGEXACT, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(title));
        SendMessageW(list, CB_SETCURSEL, static_cast<WPARAM>(place), 0);
        list = GetNextDlgTabItem(box, list, FALSE);
    }
    PostMessageW(box, WM_COMMAND, IDOK, 0);
    PressOk(WaitForWindow(quillbox.Id(), L"#32770", L"Quillbox", kPatience));
    EXPECT_TRUE(quillbox.WaitForEnd(kPatience));
    EXPECT_EQ(program.Read(L"settings.ini"), kGermanTitles);
}

class LanguageTest : public MailRun,
                     public testing::WithParamInterface<std::pair<std::string, std::wstring>> {};

TEST_P(LanguageTest, IsExported)
{
    AddFolder(L"Inbox", 2);
    ASSERT_TRUE(Start(GetParam().first, GetParam().second));
    EXPECT_EQ(Run(cmdExport), L"All emails for the selected folder have been exported.");
    for (const char* name : {"0000_Inbox0", "0001_Inbox1"})
        EXPECT_NE(program.Read(Stored(L"Inbox\\" + std::wstring(name, name + 11) + L".eml")), "") << name;
    EXPECT_TRUE(Contains(Log(), "2 of 2 e-mail(s) handled in this run are saved; 0 are not."));
}

INSTANTIATE_TEST_SUITE_P(ByPartsOrCaptions, LanguageTest,
                         testing::Values(std::pair("[Extras]\r\nAny Language=1\r\n" + kGermanTitles,
                                                   L"--language=de"),
                                         std::pair("[Extras]\r\nAny Language=1\r\n" + kGermanTitles,
                                                   L"--language=de --system-dialog"),
                                         std::pair("Sendkeys=1\r\n[Extras]\r\nAny Language=1\r\n" +
                                                       kGermanTitles + "Sendkeys=DU\r\n",
                                                   L"--language=de"),
                                         std::pair(kFrench, L"--language=fr")));

} // namespace
