// Folders that go while a query is on. The consumer of the values removes them, so that it happens at a known
// time.

#include <gtest/gtest.h>

#include <filesystem>

#include "Evaluator/Embedding.h"
#include "support/TemporaryFolder.h"

namespace {

// The problem of a query whose consumer does something at each value.
std::string ProblemOf(std::string const& query, Evaluator::Consumer const& consumer) {
    EXPECT_TRUE(Evaluator::LoadInspectors(Evaluator::StandardInspectorsFolder()).empty());
    std::string message;
    {
        auto const compiled = Evaluator::Query::Compile(query);
        EXPECT_TRUE(compiled.problems.empty());
        if (compiled.query) {
            auto const problem = compiled.query->Run(consumer);
            message = problem ? problem->message : "";
        }
    }
    for (std::string const& name : Evaluator::LoadedLibraries())
        EXPECT_FALSE(Evaluator::UnloadInspectorLibrary(name));
    return message;
}

}  // namespace

TEST(Gone, FolderIsNamed) {
    TemporaryFolder const here;
    here.MakeFolder("a");
    here.MakeFolder("b");
    here.Write("a/in a");
    here.Write("b/in b");
    std::string gone;
    auto const removeTheOther = [&](Evaluator::Result const& value) {
        gone = here.Path(value.Text() == "in a" ? "b" : "a");
        std::filesystem::remove_all(gone);
        return true;
    };
    for (char const* query : {"names of items of folders", "names of descendants"}) {
        std::string const message = ProblemOf(query + (" of folder \"" + here.Path() + "\""), removeTheOther);
        EXPECT_EQ("the folder \"" + gone + "\" is not there", message) << query;
        here.MakeFolder(gone.substr(here.Path().size() + 1));
        here.Write(gone.substr(here.Path().size() + 1) + "/in " + gone.back());
    }
}

// It was found, and is looked for again when it is read.
TEST(Gone, FileIsRead) {
    TemporaryFolder const here;
    std::string gone;
    auto const removeTheOther = [&](Evaluator::Result const& value) {
        gone = here.Path(value.Text() == "in a" ? "b" : "a");
        std::filesystem::remove(gone);
        return true;
    };
    for (std::string const query : {"lines of files", "lines containing \"in\" of files"}) {
        here.Write("a", "in a");
        here.Write("b", "in b");
        std::string const message = ProblemOf(query + " of folder \"" + here.Path() + "\"", removeTheOther);
        EXPECT_EQ(0u, message.find("the file ")) << message;
        EXPECT_NE(std::string::npos, message.find(" is not there")) << message;
        EXPECT_FALSE(gone.empty());
    }
}
