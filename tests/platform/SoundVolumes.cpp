// The Sound Manager, with a library that stands in for ALSA's.

#include <Carbon/Sound.h>
#include <Platform/Items.h>
#include <alsa/asoundlib.h>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <chrono>
#include <climits>
#include <condition_variable>
#include <filesystem>
#include <mutex>
#include <thread>

#include "platform/FakeMixer.h"
#include "platform/OwnHome.h"
#include "sound/Mixer.h"
#include "sound/PulseAudio.h"

using Clock = std::chrono::steady_clock;

namespace {

struct Volume {
    OSErr error;
    UInt32 word;
    bool operator==(Volume const&) const = default;
};
void PrintTo(Volume const& volume, std::ostream* stream) {
    *stream << volume.error << " " << std::hex << volume.word;
}

constexpr UInt32 kUntouched = 0xDEADBEEF;

Volume Asked(OSErr (*ask)(SInt32*)) {
    auto level = static_cast<SInt32>(kUntouched);
    OSErr const error = ask(&level);
    return {error, static_cast<UInt32>(level)};
}
Volume Output() { return Asked(GetDefaultOutputVolume); }
Volume Beep() { return Asked(GetSysBeepVolume); }

Volume Levels(UInt16 left, UInt16 right) { return {noErr, UInt32{right} << 16 | left}; }
Volume const kNone{noHardwareErr, kUntouched};

FakeControl Control(char const* name, long left, long right) {
    FakeControl control;
    control.name = name;
    control.left = left;
    control.right = right;
    return control;
}

// Why the last call failed; empty where nothing was noted.
std::string Reason() {
    char file[100], reason[500];
    PlatformSettingsFailure(file, sizeof file, reason, sizeof reason);
    EXPECT_STREQ("", file);
    PlatformForgetFileFailure();
    return reason;
}

class SoundVolumes : public OwnHome {
  protected:
    SoundVolumes() { machine.Set(std::nullopt); }
    ~SoundVolumes() override {
        EXPECT_EQ(0, Fake().open) << "all that was opened is closed";
        Fake().controls.clear();
        Fake().configuration.clear();
        Fake().configurationOfOpened.clear();
        Fake().opened.clear();
        Fake().isConfigurationBroken = false;
        Fake().failingStep = 0;
        Fake().whenOpened = nullptr;
    }

    Variable const configuration{"ALSA_CONFIG_PATH", here.Path("asound.conf")};
    Variable const server{"PULSE_SERVER", std::nullopt};
    Variable const folder{"PULSE_RUNTIME_PATH", here.Path("run")};
    Variable const userRun{"XDG_RUNTIME_DIR", std::nullopt};
    Variable const cookie{"PULSE_COOKIE", std::nullopt};

    void WriteCookie() const { Write("home/.config/pulse/cookie", std::string(256, 'c')); }
    std::string CookieOf(std::string const& name) const {
        return "the sound server's cookie \"" + here.Path(name) +
               "\" is no file of at least 256 bytes that can be read";
    }
};

// A server that listens at a socket.
class Listener {
  public:
    explicit Listener(std::string const& path) : number(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        path.copy(address.sun_path, sizeof address.sun_path - 1);
        EXPECT_EQ(0, bind(number, reinterpret_cast<sockaddr const*>(&address), sizeof address));
        EXPECT_EQ(0, listen(number, 5));
    }
    ~Listener() { close(number); }
    Listener(Listener const&) = delete;
    Listener& operator=(Listener const&) = delete;

  private:
    int const number;
};

// A server that answers when it is let.
class Gate {
  public:
    Gate() {
        Fake().whenOpened = [this] {
            std::unique_lock lock(mutex);
            opened.wait(lock, [this] { return isOpen; });
        };
    }
    void Open() {
        std::lock_guard const lock(mutex);
        isOpen = true;
        opened.notify_all();
    }

  private:
    std::mutex mutex;
    std::condition_variable opened;
    bool isOpen = false;
};

void AwaitAnswer() {
    auto const deadline = Clock::now() + std::chrono::seconds(20);
    while (Output() == kNone && Clock::now() < deadline)
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
}

}  // namespace

TEST_F(SoundVolumes, HaveTheLeftLevelInTheLowHalf) {
    Fake().controls = {Control("Master", 32768, 65536)};
    EXPECT_EQ(Levels(128, 256), Output());
    EXPECT_EQ(SND_CTL_READONLY, Fake().mode) << "nothing can be set by mistake";
    EXPECT_EQ(std::vector<std::string>{"default"}, Fake().opened);
}

TEST_F(SoundVolumes, AreThoseOfTheFirstControlThatHasOne) {
    Fake().controls = {Control("Front", 256, 256), Control("Headphone", 512, 512),
                       Control("Speaker", 768, 768), Control("PCM", 1024, 1024),
                       Control("Master", 1280, 1280)};
    for (UInt16 const level : {5, 4, 3, 2, 1}) {
        EXPECT_EQ(Levels(level, level), Output());
        Fake().controls[static_cast<std::size_t>(level) - 1].hasVolume = false;
    }
    EXPECT_EQ(kNone, Output());
}

TEST_F(SoundVolumes, PassOverControlsWithoutARangeAndLaterOnesOfAName) {
    FakeControl noRange = Control("Master", 7, 7);
    noRange.min = noRange.max = 7;
    FakeControl second = Control("PCM", 65536, 65536);
    second.index = 1;
    Fake().controls = {noRange, second, Control("Front", 512, 256)};
    EXPECT_EQ(Levels(2, 1), Output());
}

TEST_F(SoundVolumes, OfAMutedChannelAreZero) {
    FakeControl master = Control("Master", 65536, 65536);
    master.hasSwitch = true;
    master.isLeftOn = false;
    Fake().controls = {master};
    EXPECT_EQ(Levels(0, 256), Output());
    master.isLeftOn = true;
    master.isRightOn = false;
    Fake().controls = {master};
    EXPECT_EQ(Levels(256, 0), Output());
    master.hasSwitch = false;
    Fake().controls = {master};
    EXPECT_EQ(Levels(256, 256), Output()) << "there is no switch that could be off";
}

TEST_F(SoundVolumes, OfOneChannelAreThoseOfBoth) {
    FakeControl mono = Control("Master", 65536, 0);
    mono.isMono = true;
    Fake().controls = {mono};
    EXPECT_EQ(Levels(256, 256), Output());
    FakeControl leftOnly = Control("Master", 32768, 0);
    leftOnly.hasRight = false;
    Fake().controls = {leftOnly};
    EXPECT_EQ(Levels(128, 128), Output());
}

TEST_F(SoundVolumes, OfTheBeepAreThoseOfItsControlsFirst) {
    Fake().controls = {Control("Master", 256, 256)};
    EXPECT_EQ(Levels(1, 1), Beep());
    Fake().controls.push_back(Control("PC Speaker", 512, 512));
    EXPECT_EQ(Levels(2, 2), Beep());
    Fake().controls.push_back(Control("Beep", 768, 768));
    EXPECT_EQ(Levels(3, 3), Beep());
    EXPECT_EQ(Levels(1, 1), Output());
}

TEST(SoundLevels, AreInProportionToTheRangeAndRounded) {
    using Platform::LevelOf;
    EXPECT_EQ(0, LevelOf(0, 0, 100));
    EXPECT_EQ(128, LevelOf(50, 0, 100));
    EXPECT_EQ(256, LevelOf(100, 0, 100));
    EXPECT_EQ(3, LevelOf(1, 0, 100)) << "2.56";
    EXPECT_EQ(5, LevelOf(2, 0, 100)) << "5.12";
    EXPECT_EQ(1, LevelOf(1, 0, 512)) << "one half";
    EXPECT_EQ(0, LevelOf(1, 0, 513));
    EXPECT_EQ(64, LevelOf(-75, -100, 0));
    EXPECT_EQ(384, LevelOf(98304, 0, 65536)) << "amplified";
}

TEST(SoundLevels, AreBoundedAsTheirWordsAre) {
    using Platform::LevelOf;
    EXPECT_EQ(0, LevelOf(-101, -100, 0));
    EXPECT_EQ(65535, LevelOf(256, 0, 1));
    EXPECT_EQ(65535, LevelOf(LONG_MAX, 0, 1));
    EXPECT_EQ(256, LevelOf(INT32_MAX, INT32_MIN, INT32_MAX));
    EXPECT_EQ(128, LevelOf(0, INT32_MIN, INT32_MAX));
    EXPECT_EQ(0, LevelOf(LONG_MIN, LONG_MIN, LONG_MAX));
    EXPECT_EQ(256, LevelOf(LONG_MAX, LONG_MIN, LONG_MAX));
}

TEST_F(SoundVolumes, WantALevel) {
    Fake().controls = {Control("Master", 256, 256)};
    EXPECT_EQ(paramErr, GetDefaultOutputVolume(nullptr));
    EXPECT_EQ(paramErr, GetSysBeepVolume(nullptr));
}

TEST_F(SoundVolumes, OfARecordedMachineAreNotThoseOfThisOne) {
    Fake().controls = {Control("Master", 256, 256)};
    machine.Set(here.Path());
    EXPECT_EQ(kNone, Output());
    EXPECT_EQ(kNone, Beep());
}

// Each step of opening the mixer. Nothing stays open, which the test's end looks at.
TEST_F(SoundVolumes, WithoutAMixerAreNotThereAndNothingIsPrinted) {
    Fake().controls = {Control("Master", 256, 256)};
    testing::internal::CaptureStderr();
    for (int step = 1; step <= 6; ++step) {
        Fake().failingStep = step;
        EXPECT_EQ(kNone, Output()) << step;
        EXPECT_EQ(0, Fake().open) << step;
        EXPECT_EQ("", Reason()) << step;
    }
    EXPECT_EQ("", testing::internal::GetCapturedStderr());
    Fake().failingStep = 0;
    EXPECT_EQ(Levels(1, 1), Output());
}

TEST_F(SoundVolumes, OfABrokenConfigurationFailWithTheFirstMistake) {
    Fake().isConfigurationBroken = true;
    testing::internal::CaptureStderr();
    EXPECT_EQ(kNone, Output());
    EXPECT_EQ("", testing::internal::GetCapturedStderr());
    EXPECT_EQ("the configuration of ALSA cannot be used: asound.conf:3: no end", Reason());
}

TEST_F(SoundVolumes, OfASilentServerFailAfterThreeSecondsAndThenAtOnceUntilItAnswers) {
    Fake().controls = {Control("Master", 256, 256)};
    Gate gate;
    auto const begun = Clock::now();
    EXPECT_EQ(kNone, Output());
    auto const passed = Clock::now() - begun;
    EXPECT_GE(passed, std::chrono::seconds(3));
    EXPECT_LT(passed, std::chrono::seconds(8));
    EXPECT_EQ("the sound server did not answer within 3 seconds", Reason());
    EXPECT_EQ(kNone, Beep());
    EXPECT_LT(Clock::now() - begun - passed, std::chrono::seconds(2));
    EXPECT_EQ("the sound server has not answered an earlier question", Reason());
    char mount[100];
    EXPECT_EQ(noErr, PlatformUnresponsiveMount(mount, sizeof mount)) << "it is none of a mount";
    gate.Open();
    AwaitAnswer();
    EXPECT_EQ(Levels(1, 1), Output());
}

TEST_F(SoundVolumes, AreWaitedForWhileTheHostWants) {
    Fake().controls = {Control("Master", 256, 256)};
    Gate gate;
    static int left;
    left = 3;
    PlatformSetCheckIn([](UInt32) -> Boolean { return left-- > 0; });
    Volume const volume = Output();
    PlatformSetCheckIn(nullptr);
    EXPECT_EQ((Volume{userCanceledErr, kUntouched}), volume);
    EXPECT_EQ(-1, left) << "asked until it said no, and not again";
    gate.Open();
    AwaitAnswer();
}

// ---- PulseAudio

TEST_F(SoundVolumes, OfPulseAudioAreNotAskedForWhereACookieWouldBeWritten) {
    Fake().controls = {Control("Master", 256, 256)};
    Fake().configuration = {{"ctl.default.type", "pulse"}, {"ctl.default.server", "unix:/there"}};
    EXPECT_EQ(kNone, Output());
    EXPECT_EQ("asking the sound server would write the file \"" + here.Path("home/.config/pulse/cookie") +
                  "\", which is not there",
              Reason());
    WriteCookie();
    EXPECT_EQ(Levels(1, 1), Output());
}

TEST_F(SoundVolumes, OfPulseAudioAreNotAskedForWithACookieThatIsNone) {
    Fake().configuration = {{"ctl.default.type", "pulse"}, {"ctl.default.server", "unix:/there"}};
    std::string const name = "home/.config/pulse/cookie";
    Write(name, std::string(255, 'c'));
    EXPECT_EQ(kNone, Output());
    EXPECT_EQ(CookieOf(name), Reason()) << "it is too short";
    std::filesystem::remove(here.Path(name));
    here.MakeFolder(name);
    EXPECT_EQ(kNone, Output());
    EXPECT_EQ(CookieOf(name), Reason()) << "it is a folder";
    EXPECT_TRUE(Fake().opened.empty());
}

TEST_F(SoundVolumes, OfPulseAudioTakeAnyCookieThatIsRead) {
    auto const complaint = [] { return Platform::CookieComplaint(); };
    EXPECT_TRUE(complaint().ends_with("/.config/pulse/cookie\", which is not there")) << complaint();
    Write("home/.pulse-cookie", std::string(256, 'c'));
    EXPECT_EQ("", complaint());
    Write("home/.config/pulse/cookie", "short");
    EXPECT_EQ("", complaint()) << "it is passed over";
    cookie.Set(here.Path("own"));
    EXPECT_TRUE(complaint().ends_with("/own\", which is not there")) << complaint();
    here.MakeFolder("own");
    EXPECT_EQ(CookieOf("own"), complaint());
    std::filesystem::remove(here.Path("own"));
    Write("own", std::string(256, 'c'));
    EXPECT_EQ("", complaint());
}

TEST_F(SoundVolumes, OfPulseAudioDoNotTakeAFolderForACookieWhateverFollows) {
    Write("home/.pulse-cookie", std::string(256, 'c'));
    here.MakeFolder("home/.config/pulse/cookie");
    EXPECT_EQ(CookieOf("home/.config/pulse/cookie"), Platform::CookieComplaint());
}

TEST_F(SoundVolumes, OfPulseAudioAreNotAskedForWhereNoServerIs) {
    Write("home/.config/pulse/cookie", std::string(256, 'c'));
    Fake().controls = {Control("Master", 256, 256)};
    Fake().configuration = {{"ctl.default", "other:0"}, {"ctl.other.type", "pulse"}};
    EXPECT_EQ(kNone, Output());
    EXPECT_TRUE(Fake().configurationOfOpened.empty()) << "not even opened";
    server.Set("somewhere");
    EXPECT_EQ(Levels(1, 1), Output());
    EXPECT_EQ("none", Fake().configurationOfOpened["ctl.other.fallback"]) << "so that none is started";
}

TEST_F(SoundVolumes, OfPulseAudioKeepTheMixerToTurnTo) {
    Write("home/.config/pulse/cookie", std::string(256, 'c'));
    Fake().configuration = {{"ctl.default.fallback", "sysdefault"},
                            {"ctl.default.server", "unix:/there"},
                            {"ctl.default.type", "pulse"}};
    Fake().controls = {Control("Master", 256, 256)};
    EXPECT_EQ(Levels(1, 1), Output());
    EXPECT_EQ("sysdefault", Fake().configurationOfOpened["ctl.default.fallback"]);
}

TEST_F(SoundVolumes, OfPulseAudioWithoutAServerAreThoseOfTheMixerToTurnTo) {
    Fake().controls = {Control("Master", 256, 256)};
    Fake().configuration = {{"ctl.default.type", "pulse"}, {"ctl.default.fallback", "hw:1"}};
    EXPECT_EQ(Levels(1, 1), Output());
    EXPECT_EQ(std::vector<std::string>{"hw:1"}, Fake().opened);
}

TEST_F(SoundVolumes, OfPulseAudioThatTurnsToAnotherServerAreHeldToTheSame) {
    WriteCookie();
    Fake().controls = {Control("Master", 256, 256)};
    Fake().configuration = {{"ctl.default.type", "pulse"},
                            {"ctl.default.fallback", "other"},
                            {"ctl.other.type", "pulse"},
                            {"ctl.other.fallback", "default"}};
    EXPECT_EQ(kNone, Output()) << "they lead to one another";
    EXPECT_TRUE(Fake().opened.empty());
    Fake().configuration["ctl.default.server"] = "unix:/there";
    Fake().configuration["ctl.other.fallback"] = "third";
    Fake().configuration["ctl.third.type"] = "pulse";
    EXPECT_EQ(Levels(1, 1), Output());
    EXPECT_EQ("none", Fake().configurationOfOpened["ctl.default.fallback"]) << "no server is started there";
}

TEST_F(SoundVolumes, OfTheMixerToTurnToAreAnsweredWithoutAComplaint) {
    Fake().controls = {Control("Master", 256, 256)};
    Fake().configuration = {{"ctl.default.type", "pulse"},
                            {"ctl.default.server", "unix:/there"},
                            {"ctl.default.fallback", "hw:1"}};
    EXPECT_EQ(Levels(1, 1), Output());
    EXPECT_EQ(std::vector<std::string>{"hw:1"}, Fake().opened) << "there is no cookie";
    EXPECT_EQ("", Reason());
}

// ---- Where PulseAudio's servers listen

TEST_F(SoundVolumes, OfTheSystemsServerAreAskedForByItsSocket) {
    WriteCookie();
    folder.Set(std::nullopt);
    Listener const system(here.Path("socket"));
    Fake().controls = {Control("Master", 256, 256)};
    Fake().configuration = {{"ctl.default.type", "pulse"}};
    EXPECT_TRUE(Platform::AskMixer({"Master"}, here.Path("socket")).isKnown);
    EXPECT_EQ("unix:" + here.Path("socket"), Fake().configurationOfOpened["ctl.default.server"])
        << "else the library makes folders of its own first";
    EXPECT_EQ("none", Fake().configurationOfOpened["ctl.default.fallback"]);
}

TEST_F(SoundVolumes, OfTheSystemsServerAreReadWithoutTheHookThatLooksForIt) {
    configuration.Set(std::nullopt);
    ASSERT_TRUE(Platform::AlsaLooksForPulseAudio()) << "the package libasound2-plugins is missing";
    WriteCookie();
    folder.Set(std::nullopt);
    Listener const system(here.Path("socket"));
    Fake().text.clear();
    Fake().files.clear();
    Platform::AskMixer({"Master"}, here.Path("socket"));
    EXPECT_NE("ALSA's own", Fake().files);
    EXPECT_TRUE(Fake().text.ends_with("ctl.?default { type pulse }\n")) << Fake().text;
}

TEST_F(SoundVolumes, OfTheUsersServerComeBeforeThoseOfTheSystems) {
    folder.Set(std::nullopt);
    userRun.Set(here.MakeFolder("user"));
    here.MakeFolder("user/pulse");
    Listener const system(here.Path("socket")), own(here.Path("user/pulse/native"));
    auto const found = Platform::FindPulseAudio(here.Path("socket"));
    EXPECT_TRUE(found.isThere);
    EXPECT_EQ("", found.address) << "the library finds it in its own folder";
    server.Set("somewhere");
    EXPECT_TRUE(Platform::FindPulseAudio().isThere);
    EXPECT_EQ("", Platform::FindPulseAudio().address);
}

TEST_F(SoundVolumes, OfAServerInAnotherUsersFolderAreNotAskedFor) {
    if (geteuid() != 0) GTEST_SKIP() << "needs to give a folder away";
    WriteCookie();
    folder.Set(std::nullopt);
    userRun.Set(here.MakeFolder("user"));
    here.MakeFolder("user/pulse");
    Listener const own(here.Path("user/pulse/native"));
    for (std::string const& name : {here.Path("user"), here.Path("user/pulse")}) {
        ASSERT_EQ(0, chown(name.c_str(), 1, 1));
        auto const found = Platform::FindPulseAudio(here.Path("socket"));
        EXPECT_FALSE(found.isThere);
        EXPECT_EQ("the sound server's folder \"" + name + "\" belongs to another user", found.complaint);
        ASSERT_EQ(0, chown(name.c_str(), 0, 0));
    }
    EXPECT_TRUE(Platform::FindPulseAudio(here.Path("socket")).isThere);
    ASSERT_EQ(0, chown(here.Path("user").c_str(), 1, 1));
    Fake().configuration = {{"ctl.default.type", "pulse"}};
    EXPECT_EQ("the sound server's folder \"" + here.Path("user") + "\" belongs to another user",
              Platform::AskMixer({"Master"}, here.Path("socket")).complaint);
    Listener const system(here.Path("socket"));
    EXPECT_EQ("unix:" + here.Path("socket"), Platform::FindPulseAudio(here.Path("socket")).address);
}

TEST_F(SoundVolumes, OfMixersThatLeadToOneAnotherComeToAnEnd) {
    Fake().controls = {Control("Master", 256, 256)};
    Fake().configuration = {{"ctl.default", "other"}, {"ctl.other", "default"}};
    EXPECT_EQ(Levels(1, 1), Output()) << "what the library makes of it is its own";
}

// Where ALSA's own configuration would look for a server.
TEST_F(SoundVolumes, WhereNoServerIsAreThoseOfTheUsersMixerOrTheCard) {
    configuration.Set(std::nullopt);
    ASSERT_TRUE(Platform::AlsaLooksForPulseAudio()) << "the package libasound2-plugins is missing";
    Fake().controls = {Control("Master", 256, 256)};
    Fake().text.clear();
    EXPECT_EQ(Levels(1, 1), Output());
    EXPECT_TRUE(Fake().text.ends_with("ctl.?default \"hw\"\n")) << Fake().text;
    Write("home/.asoundrc", "");
    Write("home/.config/alsa/asoundrc", "");
    Output();
    EXPECT_TRUE(
        Fake().files.ends_with(here.Path("home/.asoundrc") + ":" + here.Path("home/.config/alsa/asoundrc")))
        << Fake().files;
    server.Set("somewhere");
    Write("home/.config/pulse/cookie", std::string(256, 'c'));
    EXPECT_EQ(Levels(1, 1), Output());
    EXPECT_EQ("ALSA's own", Fake().files);
    std::filesystem::remove(here.Path("home/.config/pulse/cookie"));
    Fake().files.clear();
    EXPECT_EQ(kNone, Output());
    EXPECT_EQ("", Fake().files) << "reading them writes the cookie already";
}
