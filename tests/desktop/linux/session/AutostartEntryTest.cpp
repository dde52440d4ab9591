#include "desktop/linux/session/AutostartEntry.h"

#include "tests/desktop/FileSizeLimit.h"
#include "tests/desktop/TemporaryVariable.h"
#include "tests/desktop/linux/session/ExecValueReader.h"
#include "tests/machines/linux/TemporaryTree.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::autostart_entry_test {

namespace {

namespace fs = std::filesystem;

using Texts = std::vector<std::string>;

std::string textOf(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

Texts linesOf(const std::string& text) {
    Texts lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
}

/// All values of `key` in a group of a desktop entry.
Texts valuesIn(const std::string& text, std::string_view group, std::string_view key) {
    Texts values;
    std::string current;
    for (const std::string& line : linesOf(text)) {
        const std::size_t equals = line.find('=');
        if (line.starts_with('[')) {
            current = line;
        } else if (current == group && !line.starts_with('#') && line.substr(0, equals) == key) {
            values.push_back(line.substr(equals + 1));
        }
    }
    return values;
}

Texts entryValues(const std::string& text, std::string_view key) {
    return valuesIn(text, "[Desktop Entry]", key);
}

struct AutostartEntryTest : testing::Test {
    fakes::TemporaryTree tree;
    fs::path folder = tree.root() / "config" / "autostart";
    fs::path file = folder / "kelvinbar.desktop";
    Texts reports;
    fs::path program = makeProgram("bin/kelvinbar");
    AutostartEntry::Surroundings surroundings{.path = tree.root() / "bin", .desktopNames = "XFCE"};

    fs::path makeProgram(const fs::path& path) {
        fs::path made = tree.write(path, "#!/bin/sh\n");
        fs::permissions(made, fs::perms::owner_all);
        return made;
    }

    [[nodiscard]] AutostartEntry entryFor(Texts command) {
        return AutostartEntry(folder, "kelvinbar", std::move(command), surroundings, report());
    }

    AutostartEntry::Report report() {
        return [this](LogLevel level, const std::string& line) {
            reports.push_back(std::string(level == LogLevel::error ? "error: " : "info: ").append(line));
        };
    }

    [[nodiscard]] AutostartEntry entry() { return entryFor({program}); }

    void write(std::string_view text) { tree.write("config/autostart/kelvinbar.desktop", text); }

    /// One line about the entry.
    [[nodiscard]] Texts reported(std::string_view level, std::string_view what) const {
        return {std::string(level) + ": the autostart entry " + file.string() + " " + std::string(what)};
    }

    [[nodiscard]] Texts filesInFolder() const {
        Texts names;
        for (const auto& found : fs::directory_iterator(folder)) names.push_back(found.path().filename());
        return names;
    }
};

// Registering

TEST_F(AutostartEntryTest, IsNotRegisteredWithoutAFile) { EXPECT_FALSE(entry().isRegistered()); }

TEST_F(AutostartEntryTest, RegisteringMakesTheFolderAndACompleteEntry) {
    EXPECT_TRUE(entry().registerItem());
    EXPECT_TRUE(entry().isRegistered());
    const std::string text = textOf(file);
    EXPECT_EQ(linesOf(text).front(), "[Desktop Entry]");
    EXPECT_EQ(entryValues(text, "Type"), Texts{"Application"});
    EXPECT_EQ(entryValues(text, "Name"), Texts{"Kelvinbar"});
    ASSERT_EQ(entryValues(text, "Exec").size(), 1U);
    EXPECT_EQ(commandIn(entryValues(text, "Exec")[0]), Texts{program});
    EXPECT_TRUE(text.ends_with('\n'));
}

TEST_F(AutostartEntryTest, TheEntryStartsTheProgramWithItsArguments) {
    EXPECT_TRUE(entryFor({"/opt/My Tools/kelvinbar", "--style", "a b"}).registerItem());
    const Texts values = entryValues(textOf(file), "Exec");
    ASSERT_EQ(values.size(), 1U);
    EXPECT_EQ(commandIn(values[0]), (Texts{"/opt/My Tools/kelvinbar", "--style", "a b"}));
}

TEST_F(AutostartEntryTest, RegisteringLeavesNoOtherFile) {
    EXPECT_TRUE(entry().registerItem());
    EXPECT_EQ(filesInFolder(), Texts{"kelvinbar.desktop"});
    EXPECT_TRUE(entry().registerItem());
    EXPECT_EQ(filesInFolder(), Texts{"kelvinbar.desktop"});
}

TEST_F(AutostartEntryTest, RegisteringTwiceChangesNothing) {
    EXPECT_TRUE(entry().registerItem());
    const std::string text = textOf(file);
    EXPECT_TRUE(entry().registerItem());
    EXPECT_EQ(textOf(file), text);
}

TEST_F(AutostartEntryTest, RegisteringAgainFollowsAProgramThatMoved) {
    EXPECT_TRUE(entryFor({"/old/kelvinbar"}).registerItem());
    EXPECT_TRUE(entryFor({"/new/kelvinbar"}).registerItem());
    const Texts values = entryValues(textOf(file), "Exec");
    ASSERT_EQ(values.size(), 1U);
    EXPECT_EQ(commandIn(values[0]), Texts{"/new/kelvinbar"});
}

TEST_F(AutostartEntryTest, RegisteringReplacesTheFileInOnePiece) {
    write("[Desktop Entry]\nType=Application\nName=Kelvinbar\nExec=old\n");
    const fs::path reader = tree.root() / "reader";
    fs::create_hard_link(file, reader);
    EXPECT_TRUE(entry().registerItem());
    // A process that has the file open still reads the old content.
    EXPECT_EQ(textOf(reader), "[Desktop Entry]\nType=Application\nName=Kelvinbar\nExec=old\n");
    EXPECT_NE(textOf(file), textOf(reader));
}

TEST_F(AutostartEntryTest, WhatAnInterruptedWriteLeftIsNoObstacle) {
    tree.write("config/autostart/kelvinbar.desktop.new", "[Desktop Entry]\nHidden=tr");
    EXPECT_FALSE(entry().isRegistered());
    EXPECT_TRUE(entry().registerItem());
    EXPECT_TRUE(entry().isRegistered());
    EXPECT_EQ(filesInFolder(), Texts{"kelvinbar.desktop"});
}

TEST_F(AutostartEntryTest, TheNameIsThatOfTheFile) {
    AutostartEntry demo(folder, "kelvinbar-demo", {makeProgram("bin/kelvinbar-demo")}, surroundings,
                        report());
    EXPECT_TRUE(demo.registerItem());
    EXPECT_TRUE(demo.isRegistered());
    EXPECT_FALSE(entry().isRegistered());
    EXPECT_EQ(filesInFolder(), Texts{"kelvinbar-demo.desktop"});
}

// Unregistering

TEST_F(AutostartEntryTest, UnregisteringTakesTheEntryAway) {
    EXPECT_TRUE(entry().registerItem());
    tree.write("config/autostart/other.desktop", "[Desktop Entry]\n");
    EXPECT_TRUE(entry().unregisterItem());
    EXPECT_FALSE(entry().isRegistered());
    EXPECT_EQ(filesInFolder(), Texts{"other.desktop"});
}

TEST_F(AutostartEntryTest, UnregisteringWhatIsNotThereSucceeds) { EXPECT_TRUE(entry().unregisterItem()); }

TEST_F(AutostartEntryTest, UnregisteringFailsWhereTheFileCannotBeRemoved) {
    tree.write("config/autostart/kelvinbar.desktop/content", "");
    EXPECT_FALSE(entry().unregisterItem());
    EXPECT_EQ(reports, reported("error", "is no file and is left as it is"));
}

TEST_F(AutostartEntryTest, ReportsWhatItWritesAndRemoves) {
    EXPECT_TRUE(entry().registerItem());
    EXPECT_EQ(reports, reported("info", "is written"));
    reports.clear();
    EXPECT_TRUE(entry().unregisterItem());
    EXPECT_EQ(reports, reported("info", "is removed"));
}

// Failures

TEST_F(AutostartEntryTest, RegisteringFailsWhereAFileIsInTheFoldersPlace) {
    tree.write("config/autostart", "a file");
    EXPECT_FALSE(entry().registerItem());
    EXPECT_FALSE(entry().isRegistered());
    EXPECT_EQ(textOf(folder), "a file");
    EXPECT_EQ(reports, reported("error", "cannot be written"));
}

TEST_F(AutostartEntryTest, RegisteringFailsWhereAFileIsInTheConfigurationsPlace) {
    tree.write("config", "a file");
    EXPECT_FALSE(entry().registerItem());
    EXPECT_FALSE(entry().isRegistered());
}

TEST_F(AutostartEntryTest, AFailedReplacementLeavesWhatWasThereAndNoOtherFile) {
    tree.write("config/autostart/kelvinbar.desktop/content", "");
    EXPECT_FALSE(entry().registerItem());
    EXPECT_FALSE(entry().isRegistered());
    EXPECT_EQ(filesInFolder(), Texts{"kelvinbar.desktop"});
    EXPECT_TRUE(fs::exists(file / "content"));
}

TEST_F(AutostartEntryTest, AFailedWriteLeavesTheOldEntry) {
    write("[Desktop Entry]\nType=Application\nName=Kelvinbar\nExec=old\nHidden=true\n");
    {
        const FileSizeLimit limit(20);
        EXPECT_FALSE(entry().registerItem());
    }
    EXPECT_FALSE(entry().isRegistered());
    EXPECT_EQ(filesInFolder(), Texts{"kelvinbar.desktop"});
    EXPECT_EQ(textOf(file), "[Desktop Entry]\nType=Application\nName=Kelvinbar\nExec=old\nHidden=true\n");
}

// Entries changed by a user or a desktop

TEST_F(AutostartEntryTest, AHiddenEntryIsNotRegistered) {
    write("[Desktop Entry]\nType=Application\nName=Kelvinbar\nExec=kelvinbar\nHidden=true\n");
    EXPECT_FALSE(entry().isRegistered());
    write("[Desktop Entry]\nType=Application\nName=Kelvinbar\nExec=kelvinbar\nHidden=false\n");
    EXPECT_TRUE(entry().isRegistered());
}

TEST_F(AutostartEntryTest, AnEntryThatTheDesktopsSettingsDisabledIsNotRegistered) {
    write("[Desktop "
          "Entry]\nType=Application\nName=Kelvinbar\nExec=kelvinbar\nX-GNOME-Autostart-enabled=false\n");
    EXPECT_FALSE(entry().isRegistered());
    write("[Desktop "
          "Entry]\nType=Application\nName=Kelvinbar\nExec=kelvinbar\nX-GNOME-Autostart-enabled=true\n");
    EXPECT_TRUE(entry().isRegistered());
}

TEST_F(AutostartEntryTest, AnEntryWithoutACommandIsNotRegistered) {
    write("[Desktop Entry]\nType=Application\nName=Kelvinbar\n");
    EXPECT_FALSE(entry().isRegistered());
    write("");
    EXPECT_FALSE(entry().isRegistered());
}

TEST_F(AutostartEntryTest, SpacesAroundTheEqualsSignDoNotMatter) {
    write("[Desktop Entry]\nType = Application\nName = Kelvinbar\nExec = kelvinbar\nHidden = true\n");
    EXPECT_FALSE(entry().isRegistered());
    EXPECT_TRUE(entry().registerItem());
    EXPECT_TRUE(entry().isRegistered());
}

TEST_F(AutostartEntryTest, ACommentedLineIsNoValue) {
    write("[Desktop Entry]\nType=Application\nName=Kelvinbar\nExec=kelvinbar\n#Hidden=true\n");
    EXPECT_TRUE(entry().isRegistered());
    write("[Desktop Entry]\nType=Application\nName=Kelvinbar\n#Exec=kelvinbar\n");
    EXPECT_FALSE(entry().isRegistered());
}

TEST_F(AutostartEntryTest, ValuesOfOtherGroupsAreNotTheEntrysOwn) {
    write("[Desktop Entry]\nType=Application\nName=Kelvinbar\nExec=kelvinbar\n"
          "[X-Group]\nHidden=true\nX-GNOME-Autostart-enabled=false\n");
    EXPECT_TRUE(entry().isRegistered());
    write("[Desktop Entry]\nType=Application\nName=Kelvinbar\n[Desktop Action quit]\nExec=kelvinbar\n");
    EXPECT_FALSE(entry().isRegistered());
}

TEST_F(AutostartEntryTest, RegisteringEnablesAHiddenEntryAgain) {
    write("[Desktop Entry]\nType=Application\nName=Kelvinbar\nExec=kelvinbar\nHidden=true\n");
    EXPECT_TRUE(entry().registerItem());
    EXPECT_TRUE(entry().isRegistered());
    EXPECT_NE(entryValues(textOf(file), "Hidden"), Texts{"true"});
    EXPECT_LE(entryValues(textOf(file), "Hidden").size(), 1U);
}

TEST_F(AutostartEntryTest, RegisteringEnablesAnEntryThatTheDesktopsSettingsDisabled) {
    write("[Desktop "
          "Entry]\nType=Application\nName=Kelvinbar\nExec=kelvinbar\nX-GNOME-Autostart-enabled=false\n");
    EXPECT_TRUE(entry().registerItem());
    EXPECT_TRUE(entry().isRegistered());
    EXPECT_EQ(entryValues(textOf(file), "X-GNOME-Autostart-enabled"), Texts{"true"});
}

TEST_F(AutostartEntryTest, RegisteringWorksForAnEntryThatOnlyHides) {
    write("[Desktop Entry]\nHidden=true\n");
    EXPECT_TRUE(entry().registerItem());
    EXPECT_TRUE(entry().isRegistered());
    EXPECT_EQ(entryValues(textOf(file), "Type"), Texts{"Application"});
    EXPECT_EQ(entryValues(textOf(file), "Name"), Texts{"Kelvinbar"});
}

TEST_F(AutostartEntryTest, RegisteringKeepsEverythingElse) {
    const Texts before{"# mine",
                       "[Desktop Entry]",
                       "Type=Application",
                       "Name=Kelvinbar",
                       "Name[de]=Fühler",
                       "",
                       "# started late: the panel is slow",
                       "X-GNOME-Autostart-Delay=10",
                       "OnlyShowIn=XFCE;LXQt;",
                       "Comment=my = own \\s text",
                       "",
                       "[Desktop Action quit]",
                       "Name=Quit",
                       "Exec=kelvinbar --quit",
                       "Hidden=true",
                       "X-GNOME-Autostart-enabled=false"};
    std::string text;
    for (const std::string& line : before) {
        text.append(line).append("\n");
        if (line == "Name=Kelvinbar") {
            text.append("Exec=/old/kelvinbar\nHidden=true\nX-GNOME-Autostart-enabled=false\n");
        }
    }
    write(text);
    EXPECT_TRUE(entry().registerItem());
    EXPECT_TRUE(entry().isRegistered());

    const std::string after = textOf(file);
    Texts kept;
    bool isInEntry = false;
    for (const std::string& line : linesOf(after)) {
        if (line.starts_with('[')) isInEntry = line == "[Desktop Entry]";
        const bool isChanged = line.starts_with("Exec=") || line.starts_with("Hidden=") ||
                               line.starts_with("X-GNOME-Autostart-enabled=");
        if (!isInEntry || !isChanged) kept.push_back(line);
    }
    EXPECT_EQ(kept, before);
    ASSERT_EQ(entryValues(after, "Exec").size(), 1U);
    EXPECT_EQ(commandIn(entryValues(after, "Exec")[0]), Texts{program});
    EXPECT_EQ(entryValues(after, "X-GNOME-Autostart-enabled"), Texts{"true"});
}

TEST_F(AutostartEntryTest, ALastLineWithoutAnEndIsKept) {
    write("[Desktop Entry]\nType=Application\nExec=old\nName=Mine");
    EXPECT_TRUE(entry().registerItem());
    EXPECT_EQ(entryValues(textOf(file), "Name"), Texts{"Mine"});
    EXPECT_TRUE(entry().isRegistered());
}

// The command

TEST_F(AutostartEntryTest, APathWithAnyCharacterComesThroughTheFile) {
    const Texts command{
        makeProgram("home/a b/\"q\"/back\\slash/$HOME/100%/`x`/line\nend/jörg/kelvinbar").string()};
    EXPECT_TRUE(entryFor(command).registerItem());
    EXPECT_TRUE(entryFor(command).isRegistered());
    const Texts values = entryValues(textOf(file), "Exec");
    ASSERT_EQ(values.size(), 1U);
    EXPECT_EQ(commandIn(values[0]), command);
}

// Which program an entry starts

TEST_F(AutostartEntryTest, AnEntryOfAProgramThatIsGoneIsNotRegistered) {
    write("[Desktop Entry]\nExec=/opt/kelvinbar-1/bin/kelvinbar\n");
    EXPECT_FALSE(entry().isRegistered());
}

TEST_F(AutostartEntryTest, AnEntryOfAnotherProgramIsNotRegistered) {
    const fs::path other = makeProgram("other/kelvinbar");
    write("[Desktop Entry]\nExec=" + other.string() + "\n");
    EXPECT_FALSE(entry().isRegistered());
    write("[Desktop Entry]\nExec=" + program.string() + " --autostart\n");
    EXPECT_TRUE(entry().isRegistered());
}

TEST_F(AutostartEntryTest, AnEntryThatNamesThisProgramByALinkIsRegistered) {
    fs::create_symlink(program, tree.root() / "link");
    write("[Desktop Entry]\nExec=" + (tree.root() / "link").string() + "\n");
    EXPECT_TRUE(entry().isRegistered());
}

TEST_F(AutostartEntryTest, ANameThatLeadsToAnotherProgramIsNotRegistered) {
    makeProgram("first/kelvinbar");
    surroundings.path = (tree.root() / "first").string() + ":" + (tree.root() / "bin").string();
    write("[Desktop Entry]\nExec=kelvinbar\n");
    EXPECT_FALSE(entry().isRegistered());
    surroundings.path = (tree.root() / "none").string() + "::relative:" + (tree.root() / "bin").string();
    EXPECT_TRUE(entry().isRegistered());
    surroundings.path = "";
    EXPECT_FALSE(entry().isRegistered());
}

TEST_F(AutostartEntryTest, AFileThatCannotBeRunIsNoProgram) {
    fs::permissions(program, fs::perms::owner_read);
    EXPECT_FALSE(entryFor({program}).isRegistered());
    write("[Desktop Entry]\nExec=kelvinbar\n");
    EXPECT_FALSE(entry().isRegistered());
}

TEST_F(AutostartEntryTest, VariablesThatAnEntrySetsBeforeItsProgramDoNotMatter) {
    write("[Desktop Entry]\nExec=env LANG=C QT_SCALE_FACTOR=2 kelvinbar\n");
    EXPECT_TRUE(entry().isRegistered());
    write("[Desktop Entry]\nExec=env\n");
    EXPECT_FALSE(entry().isRegistered());
    write("[Desktop Entry]\nExec=sh -c kelvinbar\n");
    EXPECT_FALSE(entry().isRegistered());
}

TEST_F(AutostartEntryTest, NamesThePathWherePathLeadsToTheProgram) {
    // An upgrade replaces the folder and the link.
    const fs::path versioned = makeProgram("opt/kelvinbar-2/kelvinbar");
    fs::remove(program);
    fs::create_symlink(versioned, program);
    EXPECT_TRUE(entryFor({versioned, "--autostart"}).registerItem());
    EXPECT_EQ(commandIn(entryValues(textOf(file), "Exec").front()), (Texts{program.string(), "--autostart"}));
    EXPECT_TRUE(entryFor({versioned}).isRegistered());
}

TEST_F(AutostartEntryTest, NamesTheLinkedFolderWherePathLeadsThere) {
    const fs::path versioned = makeProgram("opt/kelvinbar-2/kelvinbar");
    fs::create_directory_symlink("kelvinbar-2", tree.root() / "opt/kelvinbar");
    surroundings.path = tree.root() / "opt/kelvinbar";
    EXPECT_TRUE(entryFor({versioned}).registerItem());
    EXPECT_EQ(commandIn(entryValues(textOf(file), "Exec").front()),
              Texts{tree.root() / "opt/kelvinbar/kelvinbar"});
}

TEST_F(AutostartEntryTest, StartsTheProgramInASessionWhosePathDoesNotLeadToIt) {
    EXPECT_TRUE(entry().registerItem());
    surroundings.path = "/usr/bin";
    EXPECT_TRUE(entry().isRegistered());
}

TEST_F(AutostartEntryTest, TheUserTypesTheNameWherePathLeadsToTheProgram) {
    EXPECT_EQ(entry().programWord(), "kelvinbar");
    surroundings.path = "";
    EXPECT_EQ(entry().programWord(), program);
}

TEST_F(AutostartEntryTest, NamesTheFullPathWherePathLeadsElsewhere) {
    const fs::path own = makeProgram("own/kelvinbar");
    EXPECT_TRUE(entryFor({own}).registerItem());
    EXPECT_EQ(commandIn(entryValues(textOf(file), "Exec").front()), Texts{own});
    EXPECT_EQ(entryFor({own}).programWord(), own);
}

// Conditions

TEST_F(AutostartEntryTest, AnEntryWhoseTriedProgramIsMissingIsNotRegistered) {
    write("[Desktop Entry]\nExec=kelvinbar\nTryExec=/opt/kelvinbar-1/kelvinbar\n");
    EXPECT_FALSE(entry().isRegistered());
    write("[Desktop Entry]\nExec=kelvinbar\nTryExec=kelvinbar\n");
    EXPECT_TRUE(entry().isRegistered());
    write("[Desktop Entry]\nExec=kelvinbar\nTryExec=" + program.string() + "\n");
    EXPECT_TRUE(entry().isRegistered());
}

TEST_F(AutostartEntryTest, AnEntryForOtherDesktopsIsNotRegistered) {
    write("[Desktop Entry]\nExec=kelvinbar\nOnlyShowIn=LXQt;\n");
    EXPECT_FALSE(entry().isRegistered());
    write("[Desktop Entry]\nExec=kelvinbar\nOnlyShowIn=LXQt;XFCE;\n");
    EXPECT_TRUE(entry().isRegistered());
    write("[Desktop Entry]\nExec=kelvinbar\nNotShowIn=XFCE;\n");
    EXPECT_FALSE(entry().isRegistered());
}

TEST_F(AutostartEntryTest, RegisteringDropsConditionsThatDoNotHoldHere) {
    for (const std::string condition : {"TryExec=/opt/gone", "OnlyShowIn=LXQt;", "NotShowIn=GNOME;XFCE;"}) {
        write("[Desktop Entry]\nType=Application\nName=Mine\nExec=old\n" + condition + "\n");
        EXPECT_TRUE(entry().registerItem());
        EXPECT_TRUE(entry().isRegistered()) << condition;
        EXPECT_EQ(entryValues(textOf(file), "Name"), Texts{"Mine"});
    }
}

// Renewing

TEST_F(AutostartEntryTest, RenewingMakesAStaleEntryStartThisProgram) {
    write("# mine\n[Desktop Entry]\nExec=/opt/kelvinbar-1/kelvinbar --autostart "
          "-v\nTryExec=/opt/gone\nX-Delay=3\n");
    entry().renew();
    EXPECT_TRUE(entry().isRegistered());
    const std::string text = textOf(file);
    EXPECT_EQ(commandIn(entryValues(text, "Exec").front()), (Texts{program, "--autostart", "-v"}));
    EXPECT_EQ(entryValues(text, "X-Delay"), Texts{"3"});
    EXPECT_EQ(linesOf(text).front(), "# mine");
    EXPECT_EQ(reports, reported("info", "is written"));
}

TEST_F(AutostartEntryTest, RenewingKeepsWhatComesBeforeTheProgram) {
    write("[Desktop Entry]\nExec=env LANG=C /opt/gone/kelvinbar\n");
    entry().renew();
    EXPECT_EQ(commandIn(entryValues(textOf(file), "Exec").front()), (Texts{"env", "LANG=C", program}));
}

TEST_F(AutostartEntryTest, RenewingReplacesANameThatPathDoesNotLeadTo) {
    write("[Desktop Entry]\nExec=kelvinbar\n");
    surroundings.path = "/nowhere";
    entry().renew();
    EXPECT_EQ(commandIn(entryValues(textOf(file), "Exec").front()), Texts{program});
}

TEST_F(AutostartEntryTest, RenewingLeavesAnEntryOfAnotherCopyThatIsThere) {
    const std::string installed = "[Desktop Entry]\nExec=" + makeProgram("usr/kelvinbar").string() + "\n";
    write(installed);
    entry().renew();
    EXPECT_EQ(textOf(file), installed);
    EXPECT_FALSE(entry().isRegistered());
    EXPECT_TRUE(entry().registerItem()); // the user's click
    EXPECT_TRUE(entry().isRegistered());
}

TEST_F(AutostartEntryTest, RenewingLeavesOtherEntriesAsTheyAre) {
    for (const std::string lines : {
             "Exec=kelvinbar\n",
             "Exec=/opt/gone/kelvinbar\nHidden=true\n",
             "Exec=/opt/gone/kelvinbar\nX-GNOME-Autostart-enabled=false\n",
             "Exec=sh -c \"sleep 9; kelvinbar\"\n",
             "Exec=/opt/gone/other\n",
             "Name=Kelvinbar\n",
         }) {
        write("[Desktop Entry]\n" + lines);
        entry().renew();
        EXPECT_EQ(textOf(file), "[Desktop Entry]\n" + lines);
    }
    EXPECT_TRUE(reports.empty());
}

TEST_F(AutostartEntryTest, RenewingMakesNoEntry) {
    entry().renew();
    EXPECT_FALSE(fs::exists(file));
    EXPECT_FALSE(fs::exists(folder));
}

// Links

TEST_F(AutostartEntryTest, ALinkedEntryStaysALink) {
    const fs::path kept =
        tree.write("dotfiles/kelvinbar.desktop", "[Desktop Entry]\nExec=/opt/gone/kelvinbar\n");
    fs::create_directories(folder);
    fs::create_symlink("../../dotfiles/kelvinbar.desktop", file);
    entry().renew();
    EXPECT_TRUE(fs::is_symlink(file));
    EXPECT_TRUE(entry().isRegistered());
    EXPECT_TRUE(entry().unregisterItem());
    EXPECT_TRUE(fs::is_symlink(file));
    EXPECT_FALSE(entry().isRegistered());
    EXPECT_EQ(entryValues(textOf(kept), "Hidden"), Texts{"true"});
    EXPECT_TRUE(entry().registerItem());
    EXPECT_TRUE(fs::is_symlink(file));
    EXPECT_TRUE(entry().isRegistered());
    EXPECT_EQ(filesInFolder(), Texts{"kelvinbar.desktop"});
}

TEST_F(AutostartEntryTest, RegisteringMakesTheMissingTargetOfALink) {
    fs::create_directories(folder);
    fs::create_directories(tree.root() / "dotfiles");
    fs::create_symlink(tree.root() / "dotfiles" / "entry", file);
    EXPECT_TRUE(entry().registerItem());
    EXPECT_TRUE(fs::is_symlink(file));
    EXPECT_TRUE(entry().isRegistered());
}

TEST_F(AutostartEntryTest, RegisteringFailsForALinkIntoAFolderThatIsMissing) {
    fs::create_directories(folder);
    fs::create_symlink(tree.root() / "missing" / "entry", file);
    EXPECT_FALSE(entry().registerItem());
    EXPECT_TRUE(fs::is_symlink(file));
    EXPECT_EQ(reports, reported("error", "cannot be written"));
}

TEST_F(AutostartEntryTest, WhatIsNoRegularFileIsNeitherReadNorReplaced) {
    fs::create_directories(folder);
    const fs::path pipe = tree.root() / "pipe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    for (const fs::path& target : {fs::path("/dev/null"), pipe, tree.root() / "bin", file}) {
        fs::create_symlink(target, file);
        EXPECT_FALSE(entry().isRegistered()) << target;
        EXPECT_FALSE(entry().registerItem()) << target;
        EXPECT_FALSE(entry().unregisterItem()) << target;
        entry().renew();
        EXPECT_EQ(fs::read_symlink(file), target);
        fs::remove(file);
    }
    ASSERT_EQ(::mkfifo(file.c_str(), 0600), 0);
    EXPECT_FALSE(entry().registerItem());
    EXPECT_FALSE(entry().unregisterItem());
    EXPECT_TRUE(fs::is_fifo(file));
    EXPECT_TRUE(fs::is_fifo(pipe));
    EXPECT_TRUE(fs::is_character_file("/dev/null"));
}

TEST_F(AutostartEntryTest, APipeUnderTheNameOfTheNewFileIsNoObstacle) {
    fs::create_directories(folder);
    ASSERT_EQ(::mkfifo((folder / "kelvinbar.desktop.new").c_str(), 0600), 0);
    EXPECT_TRUE(entry().registerItem());
    EXPECT_EQ(filesInFolder(), Texts{"kelvinbar.desktop"});
}

// The folder

TEST(UserAutostartFolder, IsInTheUsersConfiguration) {
    const TemporaryVariable home("HOME", "/home/user");
    const TemporaryVariable config("XDG_CONFIG_HOME", "/elsewhere/config");
    EXPECT_EQ(userAutostartFolder(), fs::path("/elsewhere/config/autostart"));
}

TEST(UserAutostartFolder, IsInTheHomeFolderWithoutAnotherConfiguration) {
    const TemporaryVariable home("HOME", "/home/user");
    const TemporaryVariable unset("XDG_CONFIG_HOME", nullptr);
    EXPECT_EQ(userAutostartFolder(), fs::path("/home/user/.config/autostart"));
    const TemporaryVariable empty("XDG_CONFIG_HOME", "");
    EXPECT_EQ(userAutostartFolder(), fs::path("/home/user/.config/autostart"));
}

TEST(UserAutostartFolder, IgnoresARelativePath) {
    const TemporaryVariable home("HOME", "/home/user");
    const TemporaryVariable config("XDG_CONFIG_HOME", "config");
    EXPECT_EQ(userAutostartFolder(), fs::path("/home/user/.config/autostart"));
}

TEST_F(AutostartEntryTest, AnEntryWithoutATypeIsCompletedAndKept) {
    write("# mine\n[Desktop Entry]\nName=Mine\nExec=x\n[Desktop Action q]\nExec=y\n");
    EXPECT_TRUE(entry().registerItem());
    const std::string after = textOf(file);
    EXPECT_TRUE(after.starts_with("# mine\n[Desktop Entry]\n"));
    EXPECT_TRUE(after.ends_with("[Desktop Action q]\nExec=y\n"));
    EXPECT_EQ(entryValues(after, "Type"), Texts{"Application"});
    EXPECT_EQ(entryValues(after, "Name"), Texts{"Mine"});
}

TEST_F(AutostartEntryTest, AnEntryThatCannotBeReadInFullIsNotReplaced) {
    std::string text = "[Desktop Entry]\nType=Application\nName=Kelvinbar\nExec=x\n# ";
    text.append(100'000, 'x').append("\n");
    write(text);
    EXPECT_FALSE(entry().registerItem());
    EXPECT_EQ(reports, reported("error", "cannot be read in full and is left as it is"));
    EXPECT_EQ(textOf(file), text);
}

TEST_F(AutostartEntryTest, AnEntryThatMateHasDisabledIsEnabledAgain) {
    write("[Desktop Entry]\nType=Application\nName=Kelvinbar\nExec=x\nX-MATE-Autostart-enabled=false\n");
    EXPECT_FALSE(entry().isRegistered());
    EXPECT_TRUE(entry().registerItem());
    EXPECT_TRUE(entry().isRegistered());
    EXPECT_EQ(entryValues(textOf(file), "X-MATE-Autostart-enabled"), Texts{"true"});
}

} // namespace
} // namespace kelvinbar::autostart_entry_test
