#include "tests/architecture/source_tree.h"

#include <gtest/gtest.h>

using namespace velkoro;

namespace {

using lines = std::vector<std::string>;
const lines none;

const source_tree& sources()
{
    static const source_tree tree = read_sources();
    return tree;
}

// A tree of files that hold nothing but their includes.
source_tree made_up(const std::map<std::string, std::string>& texts)
{
    source_tree tree;
    for (const auto& [path, text] : texts)
        tree[path] = parse_source(text);
    return tree;
}

} // namespace

TEST(Architecture, TheSourcesAreFound)
{
    EXPECT_TRUE(sources().contains("core/store.h"));
    EXPECT_TRUE(sources().contains("app/cli_main.cpp"));
    EXPECT_TRUE(sources().contains("tests/architecture/architecture_test.cpp"));
    const lines& of_store = sources().at("core/store.h").own;
    EXPECT_NE(std::find(of_store.begin(), of_store.end(), "core/text_pool.h"), of_store.end());
}

TEST(Architecture, AFileIncludesFromItsOwnFolderOrALowerOne)
{
    EXPECT_EQ(upward_includes(sources()), none);
}

TEST(Architecture, EveryQuotedIncludeNamesAFileFromTheRoot)
{
    EXPECT_EQ(unresolved_includes(sources()), none);
}

TEST(Architecture, OnlyUiAndAppKnowTheWindowToolkit)
{
    EXPECT_EQ(toolkit_includes(sources()), none);
}

TEST(Architecture, NoIncludesGoInACircle)
{
    EXPECT_EQ(include_circles(sources()), none);
}

TEST(Architecture, EveryHeaderBeginsWithItsCommentAndPragmaOnce)
{
    EXPECT_EQ(headers_without_guard(sources()), none);
}

TEST(ArchitectureRules, AnUpwardIncludeIsFound)
{
    const source_tree tree = made_up({{"core/a.h", "#include \"coords/b.h\"\n"},
                                      {"coords/b.h", "#include \"core/c.h\"\n"},
                                      {"core/c.h", ""}});
    EXPECT_EQ(upward_includes(tree), lines{"core/a.h includes coords/b.h"});
}

TEST(ArchitectureRules, TheCommandLineIsNotAboveTheWindowLayer)
{
    EXPECT_EQ(upward_includes(made_up({{"cli/a.cpp", "#include \"ui/b.h\"\n"}})).size(), 1U);
    EXPECT_EQ(upward_includes(made_up({{"app/a.cpp", "#include \"ui/b.h\"\n"}})), none);
    EXPECT_EQ(upward_includes(made_up({{"cli/a.cpp", "#include \"tests/b.h\"\n"}})).size(), 1U);
}

TEST(ArchitectureRules, TheToolkitIsFoundInEverySpelling)
{
    for (const char* spelling : {"#include <QString>\n", "#include <QtCore/QString>\n",
                                 "  # include <QtWidgets>\n", "#include <qglobal.h>\n"}) {
        EXPECT_EQ(toolkit_includes(made_up({{"map/a.cpp", spelling}})).size(), 1U) << spelling;
        EXPECT_EQ(toolkit_includes(made_up({{"ui/a.cpp", spelling}})), none) << spelling;
    }
    EXPECT_EQ(toolkit_includes(made_up({{"map/a.cpp", "#include <queue>\n"}})), none);
}

TEST(ArchitectureRules, ACircleIsFoundAndTold)
{
    const source_tree tree = made_up({{"core/a.h", "#include \"core/b.h\"\n"},
                                      {"core/b.h", "#include \"core/c.h\"\n"},
                                      {"core/c.h", "#include \"core/a.h\"\n"}});
    EXPECT_EQ(include_circles(tree), lines{"core/a.h -> core/b.h -> core/c.h -> core/a.h"});
}

TEST(ArchitectureRules, AHeaderWithoutPragmaOnceIsFound)
{
    EXPECT_EQ(headers_without_guard(made_up({{"core/a.h", "/// Comment.\n\nint a();\n"}})),
              lines{"core/a.h"});
    EXPECT_EQ(headers_without_guard(made_up({{"core/a.h", "/// Comment.\n#pragma once\n"}})), none);
}
