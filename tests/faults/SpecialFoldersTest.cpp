// What the command says of an administrator's table of special folders that cannot be used.

#include <gmock/gmock.h>
#include <sys/stat.h>

#include "faults/Asking.h"
#include "support/TemporaryFolder.h"
#include "support/Variable.h"

namespace {

class SpecialFolderTables : public testing::Test {
  protected:
    std::string Administrate(std::string const& text) const {
        here.MakeFolder("etc/zelq");
        return here.Write("etc/zelq/folders.conf", text);
    }

    TemporaryFolder const here;
    Variable const machine{"ZELQ_MACHINE_ROOT", here.Path()};
};

}  // namespace

TEST_F(SpecialFolderTables, WithMistakesAreToldOfWithTheirLines) {
    std::string const file = Administrate("[font]\n# a comment\nuser = fonts\n[fnot]\n");
    for (std::string const phrase :
         {"temporary items folder", "fonts folder of user domain", "names of startup items"})
        EXPECT_THAT(
            RunZelq({phrase}).err,
            testing::HasSubstr("failed: the platform's error -4270 (the file \"" + file +
                               "\" cannot be used: line 3: \"fonts\" is no absolute path; line 4: there "
                               "is no type of folder \"fnot\")"));
    EXPECT_EQ(1, RunZelq({"exists fonts folder"}).status);
}

TEST_F(SpecialFolderTables, WithMistakesAreToldOfWhereApplicationsAreLookedFor) {
    std::string const file = Administrate("[font]\nuser = fonts\n");
    for (std::string const query : {"primary application \"EDIT\"", "exists primary application \"EDIT\""})
        ExpectFailure("primary application",
                      "the file \"" + file + "\" cannot be used: line 2: ", RunZelq({query}));
}

TEST_F(SpecialFolderTables, ThatMayNotBeReadAreToldOf) {
    std::string const file = Administrate("");
    chmod(file.c_str(), 0);
    Ran const ran = RunUnprivileged("temporary items folder");
    ExpectFailure("temporary items folder", "the file \"" + file + "\" cannot be used: it may not be read",
                  ran);
}

TEST_F(SpecialFolderTables, FoldersThatMayNotBeLookedAtAreToldOf) {
    std::string const locked = here.MakeFolder("locked"), folder = here.MakeFolder("locked/folder");
    Administrate("[temp]\nsystem = " + folder + "\n");
    chmod(locked.c_str(), 0);
    Ran const ran = RunUnprivileged("temporary items folder");
    chmod(locked.c_str(), 0700);
    ExpectFailure("temporary items folder", "the item \"" + folder + "\" may not be read", ran);
}

TEST_F(SpecialFolderTables, MaySayThatThereIsNoSuchFolder) {
    Administrate("[temp]\nsystem =\n");
    ExpectNoSuchObject(RunZelq({"temporary items folder"}));
    ExpectAnswer("false\n", RunZelq({"(exists temporary items folder) as string"}));
}

TEST_F(SpecialFolderTables, ThatAreTooLargeAreToldOf) {
    std::string const file = Administrate("");
    std::filesystem::resize_file(file, 5 << 20);
    ExpectFailure("temporary items folder", "the file \"" + file + "\" cannot be used: it is too large",
                  RunZelq({"temporary items folder"}));
}

TEST(ServicesOfTheMachine, ThatAreTooManyToBeReadAreToldOf) {
    TemporaryFolder const here;
    Variable const machine("ZELQ_MACHINE_ROOT", here.Path());
    here.MakeFolder("etc");
    std::string const file = here.Write("etc/services", "http 80/tcp\n");
    ExpectAnswer("80\n", RunZelq({"ports of services of internet config as string"}));
    std::filesystem::resize_file(file, 5 << 20);
    ExpectFailure("service", "the file \"" + file + "\" cannot be used: it is too large",
                  RunZelq({"services of internet config"}));
}
