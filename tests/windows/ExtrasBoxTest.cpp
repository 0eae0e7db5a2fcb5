// ExtrasBoxTest.cpp: the box of the extras, by keys. Run at other resolutions too.
#include "app/Extras.h"
#include "app/ExtrasIds.h"
#include "platform/win32/WideText.h"
#include "tests/windows/MailRun.h"
#include "text/Numbers.h"

namespace {

TEST_F(MailRun, ExtrasAreChosenByKeysAndWrittenByOkAlone)
{
    ASSERT_TRUE(program.PassStartUp());
    const auto open = [&] {
        program.Type('x');
        return WaitForWindow(program.Process().Id(), L"#32770", L"Extras", kPatience);
    };
    const auto isWritten = [&] { return Contains(program.Read(L"settings.ini"), "[Extras]"); };
    const int rows = static_cast<int>(ExtraRows().size());
    for (const WORD key : {VK_ESCAPE, VK_RETURN}) {
        const HWND box = open();
        EXPECT_FALSE(isWritten()) << "Escape writes nothing";
        const HWND pane = FindControl(box, L"#32770");
        const auto control = [&](int row) { return GetDlgItem(pane, ID_FIRST_EXTRA + row); };
        EXPECT_TRUE(Encloses(PlaceOf(GetDesktopWindow()), PlaceOf(box))) << "it fits the screen";
        for (int row = 0; row < rows; ++row) {
            const ExtraRow& extra = ExtraRows()[static_cast<std::size_t>(row)];
            EXPECT_TRUE(Eventually([&] { return program.Focus() == control(row); }, kPatience)) << row;
            EXPECT_TRUE(Encloses(PlaceOf(pane), PlaceOf(program.Focus()))) << "scrolled to: " << row;
            if (extra.IsSwitch()) {
                EXPECT_EQ(TextOf(control(row)), Wide(extra.key));
                PostMessageW(control(row), WM_KEYDOWN, VK_SPACE, 0);
                PostMessageW(control(row), WM_KEYUP, VK_SPACE, 0);
            } else {
                EXPECT_EQ(TextOf(control(row)), Wide(DecimalText(extra.normal)));
                PostMessageW(control(row), WM_KEYDOWN, extra.normal == extra.most ? VK_DOWN : VK_UP, 0);
            }
            program.Type(VK_TAB);
        }
        EXPECT_TRUE(Eventually([&] { return program.Focus() == GetDlgItem(box, IDOK); }, kPatience));
        program.Type(key);
        EXPECT_TRUE(Eventually([&] { return !IsWindow(box); }, kPatience));
    }
    EXPECT_TRUE(Eventually(isWritten, kPatience)); // behind the box
    EXPECT_TRUE(Eventually([&] { return program.Focus() == Control(cmdExtras); }, kPatience));
    const std::string written = program.Read(L"settings.ini");
    for (const ExtraRow& row : ExtraRows()) {
        const std::string line = ToUtf8(Text(row.key) + u"=" + DecimalText(row.normal));
        EXPECT_FALSE(Contains(written, line + "\r\n")) << line;
    }
    open();
    ASSERT_TRUE(program.Close()) << "the box is no hindrance";
}

} // namespace
