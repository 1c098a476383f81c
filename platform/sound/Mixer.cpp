#include "sound/Mixer.h"

#include <alsa/asoundlib.h>
#include <dlfcn.h>
#include <unistd.h>

#include <algorithm>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <memory>

#include "foundation/PathStyles.h"
#include "machine/Environment.h"
#include "sound/PulseAudio.h"

namespace Platform {

namespace {

// What is used of the library.
struct Library {
    decltype(snd_strerror)* strError;
    decltype(snd_lib_error_set_local)* errorSetLocal;
    decltype(snd_input_buffer_open)* inputBufferOpen;
    decltype(snd_input_close)* inputClose;
    decltype(snd_config_top)* configTop;
    decltype(snd_config_load)* configLoad;
    decltype(snd_config_update_r)* configUpdate;
    decltype(snd_config_update_free)* configUpdateFree;
    decltype(snd_config_delete)* configDelete;
    decltype(snd_config_search)* configSearch;
    decltype(snd_config_get_string)* configGetString;
    decltype(snd_config_set_string)* configSetString;
    decltype(snd_config_imake_string)* configMakeString;
    decltype(snd_config_add)* configAdd;
    decltype(snd_ctl_open_lconf)* ctlOpen;
    decltype(snd_ctl_close)* ctlClose;
    decltype(snd_hctl_open_ctl)* hctlOpen;
    decltype(snd_mixer_open)* mixerOpen;
    decltype(snd_mixer_close)* mixerClose;
    decltype(snd_mixer_attach_hctl)* mixerAttach;
    decltype(snd_mixer_load)* mixerLoad;
    decltype(snd_mixer_selem_register)* selemRegister;
    decltype(snd_mixer_selem_id_malloc)* idMalloc;
    decltype(snd_mixer_selem_id_free)* idFree;
    decltype(snd_mixer_selem_id_set_name)* idSetName;
    decltype(snd_mixer_selem_id_set_index)* idSetIndex;
    decltype(snd_mixer_find_selem)* findSelem;
    decltype(snd_mixer_selem_has_playback_volume)* hasVolume;
    decltype(snd_mixer_selem_has_playback_switch)* hasSwitch;
    decltype(snd_mixer_selem_is_playback_mono)* isMono;
    decltype(snd_mixer_selem_has_playback_channel)* hasChannel;
    decltype(snd_mixer_selem_get_playback_volume_range)* getRange;
    decltype(snd_mixer_selem_get_playback_volume)* getVolume;
    decltype(snd_mixer_selem_get_playback_switch)* getSwitch;
};

template <class Function>
bool Find(void* library, char const* name, Function*& function) {
    function = reinterpret_cast<Function*>(dlsym(library, name));
    return function != nullptr;
}

// Null where there is no such library. One that was opened stays open.
Library const* OpenLibrary() {
    void* const handle = dlopen("libasound.so.2", RTLD_NOW | RTLD_LOCAL);
    if (handle == nullptr) return nullptr;
    static Library l;
    bool const hasAll =
        Find(handle, "snd_strerror", l.strError) &&
        Find(handle, "snd_lib_error_set_local", l.errorSetLocal) &&
        Find(handle, "snd_input_buffer_open", l.inputBufferOpen) &&
        Find(handle, "snd_input_close", l.inputClose) && Find(handle, "snd_config_top", l.configTop) &&
        Find(handle, "snd_config_load", l.configLoad) &&
        Find(handle, "snd_config_update_r", l.configUpdate) &&
        Find(handle, "snd_config_update_free", l.configUpdateFree) &&
        Find(handle, "snd_config_delete", l.configDelete) &&
        Find(handle, "snd_config_search", l.configSearch) &&
        Find(handle, "snd_config_get_string", l.configGetString) &&
        Find(handle, "snd_config_set_string", l.configSetString) &&
        Find(handle, "snd_config_imake_string", l.configMakeString) &&
        Find(handle, "snd_config_add", l.configAdd) && Find(handle, "snd_ctl_open_lconf", l.ctlOpen) &&
        Find(handle, "snd_ctl_close", l.ctlClose) && Find(handle, "snd_hctl_open_ctl", l.hctlOpen) &&
        Find(handle, "snd_mixer_open", l.mixerOpen) && Find(handle, "snd_mixer_close", l.mixerClose) &&
        Find(handle, "snd_mixer_attach_hctl", l.mixerAttach) && Find(handle, "snd_mixer_load", l.mixerLoad) &&
        Find(handle, "snd_mixer_selem_register", l.selemRegister) &&
        Find(handle, "snd_mixer_selem_id_malloc", l.idMalloc) &&
        Find(handle, "snd_mixer_selem_id_free", l.idFree) &&
        Find(handle, "snd_mixer_selem_id_set_name", l.idSetName) &&
        Find(handle, "snd_mixer_selem_id_set_index", l.idSetIndex) &&
        Find(handle, "snd_mixer_find_selem", l.findSelem) &&
        Find(handle, "snd_mixer_selem_has_playback_volume", l.hasVolume) &&
        Find(handle, "snd_mixer_selem_has_playback_switch", l.hasSwitch) &&
        Find(handle, "snd_mixer_selem_is_playback_mono", l.isMono) &&
        Find(handle, "snd_mixer_selem_has_playback_channel", l.hasChannel) &&
        Find(handle, "snd_mixer_selem_get_playback_volume_range", l.getRange) &&
        Find(handle, "snd_mixer_selem_get_playback_volume", l.getVolume) &&
        Find(handle, "snd_mixer_selem_get_playback_switch", l.getSwitch);
    return hasAll ? &l : nullptr;
}

// ---- Messages

thread_local char firstMessage[500];

__attribute__((format(printf, 5, 0))) void KeepMessage(char const*, int, char const*, int, char const* format,
                                                       va_list values) {
    if (firstMessage[0] == 0) std::vsnprintf(firstMessage, sizeof firstMessage, format, values);
}

// While one of these lives, the library's messages on this thread are kept and not printed.
class Messages {
  public:
    explicit Messages(Library const& opened) : library(opened), before(opened.errorSetLocal(KeepMessage)) {
        firstMessage[0] = 0;
    }
    ~Messages() { library.errorSetLocal(before); }
    Messages(Messages const&) = delete;
    Messages& operator=(Messages const&) = delete;

    static std::string First() { return firstMessage; }

  private:
    Library const& library;
    snd_local_error_handler_t const before;
};

// ---- The configuration

using Configuration = std::unique_ptr<snd_config_t, decltype(snd_config_delete)*>;

Configuration Owned(Library const& library, snd_config_t* configuration) {
    return {configuration, library.configDelete};
}

// That of files, apart from the one that the library itself may have in use; null stands for ALSA's own
// files. Null, and a complaint, when it cannot be used.
Configuration ReadConfiguration(Library const& library, char const* files, std::string& complaint) {
    snd_config_t* top = nullptr;
    snd_config_update_t* update = nullptr;
    int const error = library.configUpdate(&top, &update, files);
    if (update != nullptr) library.configUpdateFree(update);
    if (error < 0) {
        std::string const message = Messages::First();
        complaint = "the configuration of ALSA cannot be used: " +
                    (message.empty() ? std::string(library.strError(error)) : message);
    }
    return Owned(library, error < 0 ? nullptr : top);
}

// What ALSA's own configuration has for a mixer, where what was read before has nothing else.
constexpr std::string_view kHardware =
    "defaults.ctl.?card 0\n"
    "ctl.?hw {\n"
    "  @args [ CARD ]\n"
    "  @args.CARD {\n"
    "    type string\n"
    "    default {\n"
    "      @func getenv vars [ ALSA_CTL_CARD ALSA_CARD ]\n"
    "      default { @func refer name defaults.ctl.card }\n"
    "    }\n"
    "  }\n"
    "  type hw card $CARD\n"
    "}\n"
    "ctl.?sysdefault \"hw\"\n";
constexpr std::string_view kCardIsDefault = "ctl.?default \"hw\"\n";
constexpr std::string_view kServerIsDefault =
    "ctl.?pulse { type pulse }\n"
    "ctl.?default { type pulse }\n";

// The configuration without the hook that looks for a sound server: that of the administrator and the user,
// hardware, and what is the mixer otherwise. Files of whose paths the library would make several are left
// out.
Configuration HooklessConfiguration(Library const& library, std::string_view otherwise,
                                    std::string& complaint) {
    std::string files;
    for (std::string const& file : {std::string("/etc/asound.conf"), JoinPaths(HomeFolder(), ".asoundrc"),
                                    JoinPaths(UserFolder("XDG_CONFIG_HOME", ".config"), "alsa/asoundrc")}) {
        bool const isOne = file.find_first_of(": ") == std::string::npos;
        if (isOne && access(file.c_str(), R_OK) == 0) files += (files.empty() ? "" : ":") + file;
    }
    snd_config_t* top = nullptr;
    if (files.empty() && library.configTop(&top) < 0) return Owned(library, nullptr);
    Configuration configuration =
        files.empty() ? Owned(library, top) : ReadConfiguration(library, files.c_str(), complaint);
    if (!configuration) return configuration;
    snd_input_t* input = nullptr;
    std::string const text = std::string(kHardware) + std::string(otherwise);
    if (library.inputBufferOpen(&input, text.data(), static_cast<ssize_t>(text.size())) < 0)
        return Owned(library, nullptr);
    int const error = library.configLoad(configuration.get(), input);
    library.inputClose(input);
    return error < 0 ? Owned(library, nullptr) : std::move(configuration);
}

constexpr int kMostMixers = 10;  // that lead to one another

// What the configuration has for a mixer, through names of others; null where it has nothing.
snd_config_t* FindMixer(Library const& library, snd_config_t* configuration, std::string name) {
    for (int i = 0; i < kMostMixers; ++i) {
        snd_config_t* found = nullptr;
        char const* other = nullptr;
        name = name.substr(0, name.find(':'));  // without arguments
        if (library.configSearch(configuration, ("ctl." + name).c_str(), &found) < 0) return nullptr;
        if (library.configGetString(found, &other) < 0 || other == nullptr) return found;
        name = other;
    }
    return nullptr;
}

// A text of a mixer; empty where it has none.
std::string TextOf(Library const& library, snd_config_t* mixer, char const* key) {
    snd_config_t* entry = nullptr;
    char const* text = nullptr;
    bool const has = library.configSearch(mixer, key, &entry) >= 0 &&
                     library.configGetString(entry, &text) >= 0 && text != nullptr;
    return has ? text : "";
}

bool SetText(Library const& library, snd_config_t* mixer, char const* key, std::string const& text) {
    snd_config_t *old = nullptr, *entry = nullptr;
    if (library.configSearch(mixer, key, &old) >= 0) return library.configSetString(old, text.c_str()) >= 0;
    if (library.configMakeString(&entry, key, text.c_str()) < 0) return false;
    if (library.configAdd(mixer, entry) >= 0) return true;
    library.configDelete(entry);
    return false;
}

// The mixer to be asked, which is the one of that name or one that it turns to; empty where none may be
// asked. PulseAudio's plug-in must find a server and a cookie. It is given another mixer to turn to, whether
// that one is there or not, for it starts a server where it has none.
std::string ChooseMixer(Library const& library, snd_config_t* configuration, std::string const& name,
                        PulseAudioServer const& server, std::string& complaint, int most = kMostMixers) {
    if (most == 0) return {};
    snd_config_t* const mixer = FindMixer(library, configuration, name);
    if (mixer == nullptr || TextOf(library, mixer, "type") != "pulse") return name;
    std::string other = TextOf(library, mixer, "fallback");
    if (!other.empty()) other = ChooseMixer(library, configuration, other, server, complaint, most - 1);
    snd_config_t* entry = nullptr;
    bool const isNamed = library.configSearch(mixer, "server", &entry) >= 0;
    std::string const why = isNamed || server.isThere ? CookieComplaint() : server.complaint;
    if (!why.empty()) complaint = why;
    if ((!isNamed && !server.isThere) || !why.empty()) return other;
    bool const knowsServer =
        isNamed || server.address.empty() || SetText(library, mixer, "server", server.address);
    bool const isSet = knowsServer && SetText(library, mixer, "fallback", other.empty() ? "none" : other);
    return isSet ? name : "";
}

// The configuration to be used; null, and perhaps a complaint, where there is none.
Configuration ChooseConfiguration(Library const& library, PulseAudioServer const& server,
                                  std::string& complaint) {
    if (!AlsaLooksForPulseAudio()) return ReadConfiguration(library, nullptr, complaint);
    if (!server.isThere) {
        complaint = server.complaint;
        return HooklessConfiguration(library, kCardIsDefault, complaint);
    }
    if (!server.address.empty()) return HooklessConfiguration(library, kServerIsDefault, complaint);
    complaint = CookieComplaint();  // the hook would write it
    return complaint.empty() ? ReadConfiguration(library, nullptr, complaint) : Owned(library, nullptr);
}

// ---- The mixer

using Mixer = std::unique_ptr<snd_mixer_t, decltype(snd_mixer_close)*>;

// The mixer of a name, which only reads; null where there is none.
Mixer OpenMixer(Library const& library, snd_config_t* configuration, std::string const& name) {
    snd_ctl_t* control = nullptr;
    snd_hctl_t* controls = nullptr;
    snd_mixer_t* opened = nullptr;
    if (library.mixerOpen(&opened, 0) < 0) return {nullptr, library.mixerClose};
    Mixer mixer(opened, library.mixerClose);
    if (library.ctlOpen(&control, name.c_str(), SND_CTL_READONLY, configuration) < 0)
        return {nullptr, library.mixerClose};
    if (library.hctlOpen(&controls, control) < 0) {
        library.ctlClose(control);
        return {nullptr, library.mixerClose};
    }
    // The controls are the mixer's from here on; it has closed them where it could not use them.
    if (library.mixerAttach(opened, controls) < 0) return {nullptr, library.mixerClose};
    if (library.selemRegister(opened, nullptr, nullptr) < 0 || library.mixerLoad(opened) < 0)
        return {nullptr, library.mixerClose};
    return mixer;
}

snd_mixer_elem_t* FindControl(Library const& library, snd_mixer_t* mixer, char const* name) {
    snd_mixer_selem_id_t* id = nullptr;
    if (library.idMalloc(&id) < 0) return nullptr;
    library.idSetName(id, name);
    library.idSetIndex(id, 0);
    snd_mixer_elem_t* const control = library.findSelem(mixer, id);
    library.idFree(id);
    return control;
}

// The level of a channel; false where it has none.
bool GetLevel(Library const& library, snd_mixer_elem_t* control, snd_mixer_selem_channel_id_t channel,
              UInt16& level) {
    long min = 0, max = 0, value = 0;
    int isOn = 1;
    if (library.getRange(control, &min, &max) < 0 || min >= max) return false;
    if (library.getVolume(control, channel, &value) < 0) return false;
    if (library.hasSwitch(control) && library.getSwitch(control, channel, &isOn) < 0) isOn = 1;
    level = isOn ? LevelOf(value, min, max) : UInt16{0};
    return true;
}

bool GetLevels(Library const& library, snd_mixer_elem_t* control, MixerAnswer& answer) {
    if (control == nullptr || !library.hasVolume(control)) return false;
    if (!GetLevel(library, control, SND_MIXER_SCHN_FRONT_LEFT, answer.left)) return false;
    bool const isMono = library.isMono(control) || !library.hasChannel(control, SND_MIXER_SCHN_FRONT_RIGHT) ||
                        !GetLevel(library, control, SND_MIXER_SCHN_FRONT_RIGHT, answer.right);
    if (isMono) answer.right = answer.left;
    return true;
}

}  // namespace

UInt16 LevelOf(long value, long min, long max) {
    constexpr std::int64_t full = 256, most = 0xFFFF;
    // Values have 32 bits, whatever the library's interface has.
    auto const bounded = [](long number) {
        return std::clamp<std::int64_t>(number, std::int64_t{INT32_MIN}, std::int64_t{INT32_MAX});
    };
    std::int64_t const range = bounded(max) - bounded(min);
    std::int64_t const above = std::max<std::int64_t>(bounded(value) - bounded(min), 0);
    if (range <= 0) return 0;
    return static_cast<UInt16>(std::min((above * full + range / 2) / range, most));
}

MixerAnswer AskMixer(std::vector<char const*> const& controls, std::string const& systemSocket) {
    static Library const* const library = OpenLibrary();
    MixerAnswer answer;
    if (library == nullptr) return answer;
    Messages const messages(*library);
    PulseAudioServer const server = FindPulseAudio(systemSocket);
    Configuration const configuration = ChooseConfiguration(*library, server, answer.complaint);
    if (!configuration) return answer;
    std::string const name = ChooseMixer(*library, configuration.get(), "default", server, answer.complaint);
    if (name.empty()) return answer;
    Mixer const mixer = OpenMixer(*library, configuration.get(), name);
    if (!mixer) return answer;
    answer.isKnown = std::ranges::any_of(controls, [&](char const* name) {
        return GetLevels(*library, FindControl(*library, mixer.get(), name), answer);
    });
    return answer;
}

}  // namespace Platform
