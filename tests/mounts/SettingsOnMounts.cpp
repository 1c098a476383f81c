// Preferences, bundles and Internet settings with a file on a mount whose server stops answering.

#include <Carbon/Components.h>
#include <Carbon/InternetConfig.h>

#include <Carbon/Folders.h>

#include "mounts/MountedForks.h"
#include "platform/ListVerbs.h"
#include "support/Variable.h"

using namespace Mounts;

namespace {

class SettingsOnMounts : public MountedForkTest {
  protected:
    std::string Preference() const {
        Owned<CFStringRef> const key(NewString("k")), application(NewString("org.example.a"));
        Owned<CFPropertyListRef> const value(CFPreferencesCopyAppValue(key, application));
        return Show(value);
    }
    /// The information dictionary of the bundle in the folder "a".
    std::string Information() const {
        Owned<CFURLRef> const url(NewURL(here.Path("a"), true));
        Owned<CFBundleRef> const bundle(CFBundleCreate(kCFAllocatorDefault, url));
        return bundle == nullptr ? "(null)" : Show(CFBundleGetInfoDictionary(bundle));
    }
    /// The text below the user's e-mails.
    std::string Signature() const { return Setting("Signature"); }
    /// The value of an Internet setting.
    std::string Setting(std::string const& name) const {
        ICInstance instance;
        EXPECT_EQ(noErr, ICStart(&instance, 0));
        char buffer[300];
        SInt32 size = sizeof buffer;
        std::string const key = static_cast<char>(name.size()) + name;
        OSStatus const status = ICGetPref(instance, Bytes(key.c_str()), nullptr, buffer, &size);
        EXPECT_EQ(noErr, ICStop(instance));
        if (status != noErr) {
            EXPECT_TRUE(status == userCanceledErr || status == volOffLinErr) << status;
            return "(null)";
        }
        return {buffer, static_cast<std::size_t>(size)};
    }
    /// The name of the first component, by its length byte.
    std::string ComponentName() const {
        Component const first = FindNextComponent(0, nullptr);
        if (first == 0) return "(null)";
        Handle const block = NewHandle(0);
        EXPECT_EQ(noErr, GetComponentInfo(first, nullptr, block, nullptr, nullptr));
        std::string const name(*block + 1, static_cast<std::size_t>(GetHandleSize(block)) - 1);
        DisposeHandle(block);
        return name;
    }
    /// Holds that a call which showed `answer` shows nothing, and says why, while the server is stopped, and
    /// `answer` again when it goes on.
    template <class Call>
    void HoldStopping(StoppableServer const& server, std::string const& answer, Call const& call) const {
        EXPECT_EQ(answer, call());
        server.Stop();
        EXPECT_EQ(GivenUp(), Stopped([&] {
                      EXPECT_EQ("(null)", call());
                      return OSErr{userCanceledErr};
                  }));
        server.GoOn();
        EXPECT_EQ(noErr,
                  WhenItAnswers([&] { return call() == answer ? OSErr{noErr} : OSErr{volOffLinErr}; }));
    }

    /// Makes these the settings of fonts.
    void ConfigureFonts(std::string const& content) {
        here.MakeFolder("home");
        here.Write("fonts.conf", "<fontconfig>" + content + "</fontconfig>");
        fontSettings.Set(here.Path("fonts.conf"));
    }

    Variable const home{"HOME", here.Path("home")};
    Variable fontSettings{"FONTCONFIG_FILE", std::nullopt};
    Variable const user{"XDG_CONFIG_HOME", here.MakeFolder("user")};
    Variable const others{"XDG_CONFIG_DIRS", here.MakeFolder("others")};
};

}  // namespace

TEST_F(SettingsOnMounts, OfComponentsAreWaitedForPatiently) {
    Variable const data("XDG_DATA_HOME", here.MakeFolder("data")), root("ZELQ_MACHINE_ROOT", here.Path());
    here.MakeFolder("data/components/A.component/Contents");
    here.Link("data/components/A.component/Contents/Info.plist", Path());
    ApartWithAServer(
        "{AudioComponents = ({type = aufx; subtype = lowp; manufacturer = Acme; name = N;});}",
        [&](StoppableServer const& server) { HoldStopping(server, "N", [&] { return ComponentName(); }); });
}

TEST_F(SettingsOnMounts, OfPreferencesAreWaitedForPatiently) {
    here.Write("others/org.example.a.plist", "{k = another;}");
    here.Link("user/org.example.a.plist", Path());
    ApartWithAServer("{k = 1;}", [&](StoppableServer const& server) {
        HoldStopping(server, "1", [&] { return Preference(); });
    });
}

TEST_F(SettingsOnMounts, OfSpecialFoldersAreWaitedForPatiently) {
    Variable const machine("ZELQ_MACHINE_ROOT", here.Path());
    here.MakeFolder("etc/zelq");
    here.Link("etc/zelq/folders.conf", Path());
    ApartWithAServer("[temp]\nsystem = /usr\n", [&](StoppableServer const& server) {
        HoldStopping(server, "/usr", [] {
            FSRef reference;
            UInt8 path[100] = "(null)";
            constexpr OSType temporary = 0x74656D70;
            if (FSFindFolder(kSystemDomain, temporary, 0, &reference) == noErr)
                FSRefMakePath(&reference, path, sizeof path);
            return std::string(reinterpret_cast<char const*>(path));
        });
    });
}

TEST_F(SettingsOnMounts, OfBundlesAreWaitedForPatiently) {
    here.MakeFolder("a/Contents");
    here.Link("a/Contents/Info.plist", Path());
    ApartWithAServer("{k = 1;}", [&](StoppableServer const& server) {
        HoldStopping(server, "{k=1}", [&] { return Information(); });
    });
}

TEST_F(SettingsOnMounts, OfTheInternetAreWaitedForPatiently) {
    here.MakeFolder("home");
    here.Link("home/.signature", Path());
    ApartWithAServer("-- \nme", [&](StoppableServer const& server) {
        HoldStopping(server, "-- \nme", [&] { return Signature(); });
    });
}

TEST_F(SettingsOnMounts, OfTheInternetThatAreStoredAreWaitedForPatiently) {
    Variable const email("EMAIL", "a@b");
    here.Link("user/com.apple.internetconfig.plist", Path());
    ApartWithAServer("{\"Version 2.5.4\" = {\"ic-added\" = {Email = {\"ic-data\" = <0163>;};};};}",
                     [&](StoppableServer const& server) {
                         HoldStopping(server, "\1c", [&] { return Setting("Email"); });
                     });
}

TEST_F(SettingsOnMounts, FontsWhoseServerDoesNotAnswerDoNotCount) {
    here.MakeFolder("fonts");
    here.Link("fonts/far", here.Path("net"));
    here.Link("fonts/far.ttf", Path());
    ConfigureFonts("<cachedir>" + here.Path("caches") + "</cachedir><dir>" + here.Path("net") +
                   "</dir><dir>" + here.Path("fonts") + "</dir><dir>/usr/share/fonts</dir>");
    Apart([&] {
        DeadServer const server(here.Path("net"));
        EXPECT_EQ(260u, Setting("PrinterFont").size()) << "needs fontconfig and a font";
    });
}

TEST_F(SettingsOnMounts, CachesOfFontsAreWaitedForPatiently) {
    ConfigureFonts("<cachedir>" + here.Path("net") + "</cachedir><dir>/usr/share/fonts</dir>");
    ApartWithAServer("", [&](StoppableServer const& server) {
        std::string const font = Setting("PrinterFont");
        EXPECT_EQ(260u, font.size()) << "needs fontconfig and a font";
        HoldStopping(server, font, [&] { return Setting("PrinterFont"); });
    });
}

TEST_F(SettingsOnMounts, SettingsOfFontsAreWaitedForPatiently) {
    fontSettings.Set(Path());
    ApartWithAServer("<fontconfig><cachedir>/nonexistent</cachedir><dir>/usr/share/fonts</dir></fontconfig>",
                     [&](StoppableServer const& server) {
                         std::string const font = Setting("PrinterFont");
                         EXPECT_EQ(260u, font.size()) << "needs fontconfig and a font";
                         HoldStopping(server, font, [&] { return Setting("PrinterFont"); });
                     });
}

TEST_F(SettingsOnMounts, FoldersOfBundlesAreWaitedForPatiently) {
    here.MakeFolder("a");
    here.Write("a/Info.plist", "{k = 1;}");
    here.Link("a/Contents", here.Path("net"));
    ApartWithAServer("", [&](StoppableServer const& server) {
        HoldStopping(server, "{k=1}", [&] { return Information(); });
    });
}
