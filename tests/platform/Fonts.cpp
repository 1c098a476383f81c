#include "internet/Fonts.h"

#include <Carbon/MacErrors.h>
#include <Platform/Items.h>
#include <stdio.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>

#include "platform/OwnHome.h"

using Platform::ChosenFont;
using Platform::GetFont;

namespace {

class Fonts : public OwnHome {
  protected:
    // Settings with folders of fonts, and a folder of caches that is not there.
    void Configure(std::string const& content) const {
        Write("fonts.conf",
              "<fontconfig><cachedir>" + here.Path("caches") + "</cachedir>" + content + "</fontconfig>");
        settings.Set(here.Path("fonts.conf"));
    }
    std::string const folder = "<dir>/usr/share/fonts</dir>";
    Variable const settings{"FONTCONFIG_FILE", std::nullopt};
    Variable const data{"XDG_DATA_HOME", std::nullopt};
    Variable const caches{"XDG_CACHE_HOME", std::nullopt};
};

// What fontconfig's own tool says.
std::string Told(std::string const& arguments) {
    FILE* const tool = popen(("fc-match " + arguments).c_str(), "r");
    std::string text;
    for (int byte = getc(tool); byte != EOF && byte != '\n'; byte = getc(tool))
        text += static_cast<char>(byte);
    EXPECT_EQ(0, pclose(tool)) << "needs the package fontconfig";
    return text;
}

}  // namespace

TEST_F(Fonts, AreThoseThatTheLibrarysToolTells) {
    ChosenFont font;
    ASSERT_EQ(noErr, GetFont("monospace", font));
    EXPECT_EQ(Told("-f '%{family[0]}' monospace"), font.name);
    EXPECT_EQ(Told("-f '%{size}' monospace"), std::to_string(font.size));
    EXPECT_EQ(0, font.face);
}

TEST_F(Fonts, AreFoundWithoutCachesAndNoneIsWritten) {
    Configure(folder);
    ChosenFont font;
    ASSERT_EQ(noErr, GetFont("DejaVu Sans Mono", font)) << "needs a font of this name";
    EXPECT_EQ("DejaVu Sans Mono", font.name);
    EXPECT_FALSE(std::filesystem::exists(here.Path("caches")));
    EXPECT_TRUE(std::filesystem::is_empty(here.Path("home")));
}

TEST_F(Fonts, HaveTheSizeAndStyleOfTheSettings) {
    Configure(folder +
              "<match target='pattern'><edit name='size' mode='assign'><double>17</double></edit>"
              "<edit name='weight' mode='assign'><const>bold</const></edit></match>");
    ChosenFont font;
    ASSERT_EQ(noErr, GetFont("DejaVu Sans Mono", font));
    EXPECT_EQ(17, font.size);
    EXPECT_EQ(1, font.face);
}

TEST_F(Fonts, WhereThereAreNoneAreNotFound) {
    Configure("<dir>" + here.MakeFolder("empty") + "</dir>");
    ChosenFont font;
    EXPECT_EQ(icPrefNotFoundErr, GetFont("monospace", font));
}

TEST_F(Fonts, WithoutSettingsAreNotFoundAndNothingIsPrinted) {
    ChosenFont font;
    settings.Set("/nonexistent");
    testing::internal::CaptureStderr();
    OSErr const absolute = GetFont("monospace", font);
    settings.Set("no-such.conf");
    OSErr const relative = GetFont("monospace", font);
    EXPECT_EQ("", testing::internal::GetCapturedStderr());
    EXPECT_EQ(icPrefNotFoundErr, absolute);
    EXPECT_EQ(icPrefNotFoundErr, relative);
}

TEST_F(Fonts, AreThoseOfSettingsBelowTheHomeOrAFolderOfTheList) {
    Configure(folder);
    home.Set(here.Path());
    Variable const path("FONTCONFIG_PATH", "/nonexistent:" + here.Path());
    for (char const* const name : {"fonts.conf", "~/fonts.conf"}) {
        settings.Set(name);
        ChosenFont font;
        EXPECT_EQ(noErr, GetFont("DejaVu Sans Mono", font)) << name << ", which needs a font of this name";
        EXPECT_EQ("DejaVu Sans Mono", font.name);
    }
}

TEST_F(Fonts, AreLookedThroughWhileTheHostWants) {
    for (int i = 0; i < 40; ++i) Write("fonts/" + std::to_string(i) + ".ttf", "");
    Configure("<dir>" + here.Path("fonts") + "</dir>");
    static int left;
    left = 20;
    PlatformSetCheckIn([](UInt32) -> Boolean { return left-- > 0; });
    ChosenFont font;
    OSErr const error = GetFont("monospace", font);
    PlatformSetCheckIn(nullptr);
    EXPECT_EQ(userCanceledErr, error);
    EXPECT_EQ(-1, left) << "asked for each file, and not again";
}

// The library would wait for whoever writes to it.
TEST_F(Fonts, OfSettingsInAPipeAreWaitedForWhileTheHostWants) {
    std::string const pipe = here.Path("pipe");
    ASSERT_EQ(0, mkfifo(pipe.c_str(), 0600));
    settings.Set(pipe);
    static int left;
    left = 3;
    PlatformSetCheckIn([](UInt32) -> Boolean { return left-- > 0; });
    ChosenFont font;
    testing::internal::CaptureStderr();
    OSErr const error = GetFont("monospace", font);
    OSErr const again = GetFont("monospace", font);
    PlatformSetCheckIn(nullptr);
    EXPECT_EQ(userCanceledErr, error);
    EXPECT_EQ(userCanceledErr, again);
    // The library's call comes back, as what was written has an end.
    { std::ofstream const writer(pipe); }
    while (GetFont("monospace", font) == volOffLinErr) settings.Set("/nonexistent");
    testing::internal::GetCapturedStderr();
}
