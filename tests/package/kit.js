// kit.js: tries Quillbox on the system that it is started on: the tests, an export with checks of a sample
// mailbox through the window, databases in the hands of DAO. Writes report.txt into the kit's folder: what the
// system is, and what came of each part, without personal data. Writes nothing outside that folder. For the
// script host that every Windows has from XP on.
// usage: cscript //nologo programs\kit.js
var shell = WScript.CreateObject("WScript.Shell"), files = WScript.CreateObject("Scripting.FileSystemObject");
var kit = files.GetParentFolderName(files.GetParentFolderName(WScript.ScriptFullName));
var MINUTE = 60000; // milliseconds

// What is run in the kit's folder, the minutes that it may take on an old machine, and a file for what it prints,
// if that does not go into the report.
var parts = [
    // Two of the tests write to the registry.
    ["Windows tests",
     "programs\\windows-tests.exe --gtest_brief=1 --gtest_filter=-Dao.*:OeRegistryEditor.*:Engines.*", 60],
    ["Core tests", "programs\\unit-tests.exe --gtest_brief=1", 30],
    ["Export and checks through the window",
     "programs\\demo-driver.exe --program work\\program\\quillbox.exe --do export-all --do check-all " +
     "--do compare=database --do check-all --do compare=file --do check-all --do show " +
     "-- programs\\demo-client.exe --mail mail.pack", 30],
    ["Records read by the embedded engine",
     "programs\\quillbox-inspect.exe db work\\program\\saved.mdb list", 5, "work\\records.txt"],
    ["Stored e-mails beside the mailbox",
     "programs\\demo-check.exe --mail mail.pack --store work\\store --all --log work\\program\\log.txt " +
     "--records work\\records.txt", 5],
    ["Databases in the hands of DAO", "programs\\windows-tests.exe --gtest_filter=Engines.*", 120]
];

function read(path) { // nothing while another program writes it
    try {
        var file = files.OpenTextFile(path), text = file.ReadAll();
        file.Close();
        return text;
    } catch (none) {
        return "";
    }
}

function registered(value) {
    try {
        return shell.RegRead(value);
    } catch (none) {
        return "none";
    }
}

function describeSystem() {
    var windows = "HKLM\\SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\", user = "HKCU\\Control Panel\\";
    var machine = "HKLM\\SYSTEM\\CurrentControlSet\\Control\\";
    return "Windows: " + registered(windows + "ProductName") + ", build " + registered(windows + "CurrentBuildNumber") +
        ", " + registered(windows + "CSDVersion") + "\r\ncode page " + registered(machine + "Nls\\CodePage\\ACP") +
        ", console " + registered(machine + "Nls\\CodePage\\OEMCP") +
        "; language " + registered(user + "International\\Locale") +
        "; dates \"" + registered(user + "International\\sShortDate") + " " +
        registered(user + "International\\sTimeFormat") +
        "\"; " + registered(machine + "TimeZoneInformation\\ActiveTimeBias") + " minutes to Universal Time; " +
        registered(user + "Desktop\\LogPixels") + " dpi; DAO 3.6: " + registered("HKCR\\DAO.DBEngine.36\\") +
        ", 12.0: " + registered("HKCR\\DAO.DBEngine.120\\") + "\r\n";
}

// Without what a report must not tell: where the kit lies, and whose machine it is. Letters beyond ASCII may be
// written in any code page.
function impersonal(text) {
    var words = [kit, kit.replace(/\\/g, "/")], names = ["USERNAME", "COMPUTERNAME", "USERDOMAIN"];
    for (var i = 0; i < names.length; ++i) {
        var name = shell.ExpandEnvironmentStrings("%" + names[i] + "%");
        if (name.length > 2) words.push(name);
    }
    for (var j = 0; j < words.length; ++j) {
        var pattern = words[j].replace(/[^\w\x80-\uFFFF]/g, "\\$&").replace(/[^\x00-\x7F]+/g, "[^\\x00-\\x7F]+");
        text = text.replace(new RegExp(pattern, "gi"), j < 2 ? "." : "***");
    }
    return text;
}

function prepare() {
    if (files.FolderExists("work")) files.DeleteFolder("work", true);
    var folders = ["work", "work\\program", "work\\store", "work\\temporary"];
    for (var i = 0; i < folders.length; ++i) files.CreateFolder(folders[i]);
    files.CopyFile("programs\\quillbox.exe", "work\\program\\");
    var settings = files.CreateTextFile("work\\program\\settings.ini");
    settings.Write("[Paths]\r\nStore=" + kit + "\\work\\store\r\n" +
        "[Options]\r\nSystem Folders=|outlook express|\r\n"); // else messages of the root are passed over
    settings.Close();
}

// Its exit code, or what else came of it.
function run(command, minutes, output) {
    var ended = "work\\ended.txt", began = new Date(), temporary = kit + "\\work\\temporary";
    if (files.FileExists(ended)) files.DeleteFile(ended);
    shell.Run("cmd /v:on /c \"set TEMP=" + temporary + "& set TMP=" + temporary + "& set QUILLBOX_DATABASES=" + kit +
        "\\databases& " + command + " > " + output + " 2>&1 & echo !errorlevel! > " + ended + "\"", 0, false);
    while (!/\n/.test(read(ended))) {
        shell.Run("ping -n 2 127.0.0.1", 0, true); // a second; Wine's script host cannot sleep
        if (new Date() - began < minutes * MINUTE) continue;
        shell.Run("taskkill /f /t /im " + /[^\\]+\.exe/.exec(command)[0], 0, true);
        return "no end";
    }
    return parseInt(read(ended), 10);
}

shell.CurrentDirectory = kit;
prepare();
var report = files.CreateTextFile("report.txt", true), failed = 0;
report.Write(read("version.txt") + describeSystem());
for (var i = 0; i < parts.length; ++i) {
    var name = parts[i][0], output = parts[i][3] || "work\\output.txt", began = new Date();
    WScript.Echo(name + " ...");
    var code = run(parts[i][1], parts[i][2], output);
    failed += code === 0 ? 0 : 1;
    report.Write("\r\n== " + name + ": " + (code === 0 ? "passed" : "FAILED with code " + code) + " (" +
        Math.round((new Date() - began) / 1000) + " s)\r\n");
    if (code !== 0 || !parts[i][3]) report.Write(impersonal(read(output)));
}
report.Write("\r\n== " + failed + " of " + parts.length + " parts failed\r\n");
report.Close();
WScript.Echo(failed + " of " + parts.length + " parts failed; report.txt tells more.");
WScript.Quit(failed ? 1 : 0);
