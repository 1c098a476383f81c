// Files are asked about in memory that does not depend on their size.

#include <gtest/gtest.h>

#include <algorithm>

#include "command/Running.h"
#include "support/TemporaryFolder.h"

namespace {

#ifdef ZELQ_ADDRESS_SANITIZER
constexpr long kMayGrow = 600 << 10;  // KiB; the sanitizer keeps what was freed for a while
constexpr long kMost = 1 << 20;
constexpr int kMany = 200000;  // lines
#else
constexpr long kMayGrow = 1 << 10;
constexpr long kMost = 16 << 10;
constexpr int kMany = 1000000;  // lines
#endif

// A file of so many lines, the last of which is a key's.
void WriteLines(TemporaryFolder const& folder, std::string const& name, int count) {
    std::string text = "[section]\n";
    for (int i = 0; i < count; ++i) text += "line " + std::to_string(i) + " of many, one like the other\n";
    folder.Write(name, text + "[last]\nkey = value\n");
}

}  // namespace

TEST(Memory, DoesNotDependOnTheSizeOfAFile) {
    TemporaryFolder const folder;
    WriteLines(folder, "few", 100);
    WriteLines(folder, "many", kMany);
    for (std::string const query :
         {"number of lines of file \"FILE\"", "number of lines containing \"absent\" of file \"FILE\"",
          "number of lines starting with \"absent\" of file \"FILE\"",
          "last value of lines containing \"like\" of file \"FILE\"",
          "exists line 1000000000 of file \"FILE\"", "content of file \"FILE\" contains \"absent\"",
          "content of file \"FILE\" as lowercase contains \"absent\"",
          "key \"key\" of section \"last\" of file \"FILE\"", "key \"key\" of file \"FILE\""}) {
        long peaks[2];
        for (bool const isLarge : {false, true}) {
            std::string of = query;
            of.replace(of.find("FILE"), 4, folder.Path(isLarge ? "many" : "few"));
            Ran const ran = RunZelq({of});
            EXPECT_EQ("", ran.err) << of;
            peaks[isLarge] = ran.peak;
        }
        EXPECT_LT(peaks[1], peaks[0] + kMayGrow) << query;
        EXPECT_LT(peaks[1], kMost) << query;
    }
}
