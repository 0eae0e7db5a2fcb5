// AnyLanguageTest.cpp: clients that do not speak English: their captions from settings.ini, or their windows
// known by what they are.
#include "app/Captions.h"
#include "oe/SaveDialog.h"
#include "tests/support/FakeProfile.h"
#include "tests/support/RunBench.h"

namespace {

const std::map<Text, Text> kGerman = {
    {u"Folders", u"Ordner"},
    {u"Folder List", u"Ordnerliste"},
    {u"Save Message As", u"Nachricht speichern unter"},
    {u"&Save", u"&Speichern"},
    {u"Cancel", u"Abbrechen"},
    {u"&No", u"&Nein"},
    {u"From", u"Von"},
    {u"Subject", u"Betreff"},
    {u"Received", u"Erhalten"},
    {u"Sent", u"Gesendet"},
    {u"To", u"An"},
};
const Text kFile = u"C:\\Quillbox\\settings.ini";

// The section of settings.ini: its keys are the captions without the marks of mnemonics.
void TakeCaptions(RunBench& bench, const std::set<Text>& keys)
{
    FakeProfile profile(kFile);
    bench.files.AddFile(kFile);
    for (const auto& [english, german] : kGerman) {
        const Text key = ReplaceAll(english, u"&", u"");
        if (keys.empty() || keys.count(key))
            profile.values[u"Captions/" + key] = key == english ? german : u" " + german;
    }
    EXPECT_EQ(LoadCaptions(bench.clientWords, profile, bench.files, kFile), RefusedCaptions());
    bench.files.files.erase(kFile);
}

void SpeakGerman(RunBench& bench)
{
    bench.fake.speaks = kGerman;
    for (Text& title : bench.fake.columnTitles)
        if (kGerman.count(title)) title = kGerman.at(title);
    bench.fake.Start();
}

} // namespace

TEST(AnyLanguage, IsExportedByItsCaptionsOrByItsParts)
{
    const std::set<Text> titles = {u"From", u"Subject", u"Received", u"Sent", u"To"};
    const std::tuple<const char*, std::set<Text>, bool, std::size_t> cases[] = {
        {"all captions", {}, false, 5},
        {"parts, and titles alone", titles, true, 5},
        {"titles alone", titles, false, 0},
    };
    for (const auto& [why, captions, anyLanguage, nodes] : cases) {
        SCOPED_TRACE(why);
        RunBench bench(6);
        SpeakGerman(bench);
        TakeCaptions(bench, captions);
        bench.settings.anyLanguage = anyLanguage;
        Synchronise(bench.run);
        EXPECT_EQ(bench.run.nodes.size(), nodes);
        EXPECT_EQ(bench.Logged(u"The extra \"Any Language\" is made for"), nodes == 0);
        if (nodes == 0) continue;
        bench.Export();
        EXPECT_EQ(bench.Records().size(), 6u);
    }
}

TEST(AnyLanguage, AWrongDialogIsNeverTypedInto)
{
    const std::tuple<const char*, std::function<void(RunBench&)>> cases[] = {
        {"for another type of file", [](RunBench& b) { b.fake.savesAs = u"Text Files (*.txt)"; }},
        {"of another window", [](RunBench& b) { b.fake.ownerless = true; }},
        {"without a button to save", [](RunBench& b) { b.fake.noSaveButton = true; }},
        {"without a name", [](RunBench& b) { b.fake.noCombo = true; }},
        {"which of two cannot be told", [](RunBench& b) { b.fake.twoDialogs = true; }},
    };
    for (const auto& [why, spoil] : cases) {
        SCOPED_TRACE(why);
        RunBench bench(1);
        bench.settings.anyLanguage = true;
        spoil(bench);
        bench.fake.onMessage = AtEach(kSetText, [](int) { ADD_FAILURE() << "typed"; });
        bench.Export();
        EXPECT_TRUE(bench.Logged(u"No dialog found"));
        EXPECT_TRUE(bench.fake.saved.empty() && bench.fake.pressed.empty());
    }
}

TEST(AnyLanguage, LettersForTheMenuAreThoseOfTheKeyboard)
{
    for (const auto& [stored, want] :
         std::map<Text, Text>{{u"dU", u"DU"}, {u"", u"FA"}, {u"D\u00DC", u"FA"}, {u"D U", u"FA"}}) {
        FakeProfile profile(kFile);
        FakeFiles files;
        files.AddFile(kFile);
        profile.values[u"Captions/Sendkeys"] = stored;
        ClientWords words = kEnglishWords;
        const RefusedCaptions refused = LoadCaptions(words, profile, files, kFile);
        EXPECT_EQ(words.saveAsLetters, want);
        EXPECT_EQ(refused.letters.has_value(), !stored.empty() && want == u"FA");
    }
}

TEST(AnyLanguage, NoColumnPassesForTwo)
{
    FakeProfile profile(kFile);
    FakeFiles files;
    files.AddFile(kFile);
    profile.values = {{u"Captions/From", u"von"}, {u"Captions/Subject", u"Von"}, {u"Captions/To", u"An"}};
    ClientWords words = kEnglishWords;
    EXPECT_EQ(LoadCaptions(words, profile, files, kFile).title, u"von");
    EXPECT_EQ(words.ColumnTitles(), kEnglishWords.ColumnTitles());
}
