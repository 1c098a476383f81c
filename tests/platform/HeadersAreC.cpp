#include "support/TemporaryFolder.h"

extern "C" int AskFromC(char const* folderPath);

TEST(Headers, ServeProgramsInC) {
    TemporaryFolder const folder;
    EXPECT_EQ(0, AskFromC(folder.Path().c_str()));
    EXPECT_EQ(-43, AskFromC(folder.Path("missing").c_str()));
}
