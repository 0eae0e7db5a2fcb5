// RecordingView.h: a window that writes down what it is told to show.
#pragma once
#include "folders/RunView.h"

#include <functional>
#include <map>

using Texts = std::vector<Text>;

template <class View>
struct RecordingViewOf : View {
    RunOptions options;
    std::vector<Text> log;   // recorded lines
    std::vector<Text> shown; // lines of the display alone
    std::vector<Text> boxes, lines, paths;
    std::vector<Text> briefBoxes; // those that close themselves
    std::vector<FolderNode> tree;
    std::map<Statistic, Text> statistics;
    std::vector<std::pair<Bar, int>> percentages;
    Text currentFolder, summary;
    std::vector<ResultsRow> results;
    std::vector<Text> summaryLines;           // appended
    std::vector<std::pair<Text, Text>> marks; // of the selected node: status, image
    int selectedLine = -2, selectedNode = -1, tab = -1;
    bool unlocked = false;
    StopButtons stopButtons = StopButtons::shown;
    std::function<void()> onEvents;

    void Forget()
    {
        for (auto* texts : {&log, &shown, &boxes, &briefBoxes, &summaryLines}) texts->clear();
        marks.clear();
        results.clear();
        statistics.clear();
        percentages.clear();
    }
    void LogLine(const Text& message, Record record) override
    {
        (record == Record::yes ? log : shown).push_back(message);
    }
    void ShowText(const Text& text) override { shown.push_back(text); }
    void ShowBox(BoxIcon, const Text& words) override { boxes.push_back(words); }
    void ShowBriefBox(BoxIcon, const Text& words) override { briefBoxes.push_back(words); }
    void ProcessEvents() override
    {
        if (onEvents) onEvents();
    }
    RunOptions Options() override { return options; }
    void ShowStatistic(Statistic which, const Text& text) override { statistics[which] = text; }
    void ShowPercentage(Bar bar, int percent) override { percentages.emplace_back(bar, percent); }
    void ShowTab(Tab which) override { tab = static_cast<int>(which); }
    void ShowStopButtons(StopButtons state) override { stopButtons = state; }
    void ShowCurrentFolder(const Text& fullName) override { currentFolder = fullName; }
    void AddProgress(const Text& line) override { log.push_back(line); }
    void ClearProgress() override { log.clear(); }
    void SetSummary(const Text& text) override { summary = text; }
    void ShowFolderTree(const std::vector<FolderNode>& nodes) override { tree = nodes; }
    void AppendSummary(const Text& line) override { summaryLines.push_back(line); }
    void AddResultsRow(const ResultsRow& row) override { results.push_back(row); }
    void SelectFolderNode(int index) override { selectedNode = index; }
    void MarkFolderNode(const Text& status, const Text& image) override { marks.emplace_back(status, image); }
    void ShowFolderLists(const std::vector<Text>& newLines, const std::vector<Text>& newPaths) override
    {
        lines = newLines;
        paths = newPaths;
    }
    void SelectFolderLine(int index) override { selectedLine = index; }
    void UnlockCommands() override { unlocked = true; }
};

using RecordingView = RecordingViewOf<RunView>;
