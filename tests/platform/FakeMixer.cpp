#include "platform/FakeMixer.h"

#include <alsa/asoundlib.h>

#include <cstdarg>
#include <utility>

// The library's own objects, as this one has them.
struct _snd_config {
    std::string path;
};
struct _snd_ctl {};
struct _snd_hctl {};
struct _snd_mixer {
    bool hasControls = false;
};
struct _snd_mixer_elem {
    FakeControl control;
};
struct _snd_mixer_selem_id {
    std::string name;
    unsigned index = 99;
};
struct _snd_input {};

FakeMixer& Fake() {
    static FakeMixer fake;
    return fake;
}

namespace {

thread_local snd_local_error_handler_t handler = nullptr;

__attribute__((format(printf, 1, 2))) void Complain(char const* format, ...) {
    va_list values;
    va_start(values, format);
    if (handler != nullptr) {
        handler("conf.c", 1, "load", 0, format, values);
    } else {
        vfprintf(stderr, format, values);
    }
    va_end(values);
}

template <class Object>
int Make(Object** object, int step) {
    if (step != 0 && Fake().failingStep == step) return -ENOENT;
    *object = new Object;
    ++Fake().open;
    return 0;
}

template <class Object>
int End(Object* object) {
    delete object;
    --Fake().open;
    return 0;
}

// What leads to texts or to other nodes stays.
snd_config_t* Node(std::string const& path) {
    static std::map<std::string, snd_config_t> nodes;
    return &nodes.try_emplace(path, snd_config_t{path}).first->second;
}

FakeControl const& ControlOf(snd_mixer_elem_t* element) { return element->control; }

}  // namespace

extern "C" {

char const* snd_strerror(int) { return "a mistake"; }
// The header declares it as a function of C++.
snd_local_error_handler_t SetHandler(snd_local_error_handler_t) __asm__("snd_lib_error_set_local");
snd_local_error_handler_t SetHandler(snd_local_error_handler_t function) {
    return std::exchange(handler, function);
}

int snd_input_buffer_open(snd_input_t** input, char const* text, ssize_t size) {
    Fake().text.assign(text, static_cast<std::size_t>(size));
    return Make(input, 0);
}
int snd_input_close(snd_input_t* input) { return End(input); }
int snd_config_top(snd_config_t** top) { return Make(top, 0); }
int snd_config_load(snd_config_t*, snd_input_t*) { return 0; }
int snd_config_update_r(snd_config_t** top, snd_config_update_t** update, char const* files) {
    Fake().files = files != nullptr ? files : "ALSA's own";
    *update = nullptr;
    if (Fake().isConfigurationBroken) {
        Complain("asound.conf:%d: %s", 3, "no end");
        Complain("later");
        return -EINVAL;
    }
    return Make(top, 0);
}
int snd_config_update_free(snd_config_update_t*) { return 0; }
int snd_config_delete(snd_config_t* config) { return End(config); }
int snd_config_search(snd_config_t* config, char const* key, snd_config_t** result) {
    std::string const path = config->path.empty() ? key : config->path + "." + key;
    auto const& texts = Fake().configuration;
    auto const found = texts.lower_bound(path);
    if (found == texts.end() || !found->first.starts_with(path)) return -ENOENT;
    *result = Node(path);
    return 0;
}
int snd_config_get_string(snd_config_t const* config, char const** text) {
    auto const found = Fake().configuration.find(config->path);
    if (found == Fake().configuration.end()) return -EINVAL;
    *text = found->second.c_str();
    return 0;
}
int snd_config_set_string(snd_config_t* config, char const* text) {
    Fake().configuration[config->path] = text;
    return 0;
}
int snd_config_imake_string(snd_config_t** config, char const* key, char const* text) {
    Fake().configuration["made." + std::string(key)] = text;
    *config = Node(key);
    return 0;
}
int snd_config_add(snd_config_t* config, snd_config_t* child) {
    Fake().configuration[config->path + "." + child->path] = Fake().configuration["made." + child->path];
    return 0;
}

int snd_mixer_open(snd_mixer_t** mixer, int) { return Make(mixer, 1); }
int snd_ctl_open_lconf(snd_ctl_t** control, char const* name, int mode, snd_config_t*) {
    Fake().opened.emplace_back(name);
    if (Fake().opened.back() == Fake().missing) return -ENOENT;
    Fake().configurationOfOpened = Fake().configuration;
    Fake().mode = mode;
    if (Fake().whenOpened) Fake().whenOpened();
    if (Fake().failingStep == 2) Complain("no mixer");
    return Make(control, 2);
}
int snd_ctl_close(snd_ctl_t* control) { return End(control); }
int snd_hctl_open_ctl(snd_hctl_t** controls, snd_ctl_t* control) {
    if (Fake().failingStep == 3) return -ENOMEM;
    snd_ctl_close(control);
    return Make(controls, 3);
}
int snd_mixer_attach_hctl(snd_mixer_t* mixer, snd_hctl_t* controls) {
    End(controls);
    mixer->hasControls = true;
    return Fake().failingStep == 4 ? -EINVAL : 0;
}
int snd_mixer_close(snd_mixer_t* mixer) { return End(mixer); }
int snd_mixer_selem_register(snd_mixer_t*, snd_mixer_selem_regopt*, snd_mixer_class_t**) {
    return Fake().failingStep == 5 ? -EINVAL : 0;
}
int snd_mixer_load(snd_mixer_t*) { return Fake().failingStep == 6 ? -EINVAL : 0; }

int snd_mixer_selem_id_malloc(snd_mixer_selem_id_t** id) { return Make(id, 0); }
void snd_mixer_selem_id_free(snd_mixer_selem_id_t* id) { End(id); }
void snd_mixer_selem_id_set_name(snd_mixer_selem_id_t* id, char const* name) { id->name = name; }
void snd_mixer_selem_id_set_index(snd_mixer_selem_id_t* id, unsigned index) { id->index = index; }
snd_mixer_elem_t* snd_mixer_find_selem(snd_mixer_t*, snd_mixer_selem_id_t const* id) {
    static std::vector<snd_mixer_elem_t> elements;
    elements.clear();
    for (FakeControl const& control : Fake().controls) {
        if (control.name != id->name || control.index != id->index) continue;
        elements.push_back({control});
        return &elements.front();
    }
    return nullptr;
}
int snd_mixer_selem_has_playback_volume(snd_mixer_elem_t* e) { return ControlOf(e).hasVolume; }
int snd_mixer_selem_has_playback_switch(snd_mixer_elem_t* e) { return ControlOf(e).hasSwitch; }
int snd_mixer_selem_is_playback_mono(snd_mixer_elem_t* e) { return ControlOf(e).isMono; }
int snd_mixer_selem_has_playback_channel(snd_mixer_elem_t* e, snd_mixer_selem_channel_id_t channel) {
    return channel == SND_MIXER_SCHN_FRONT_LEFT || ControlOf(e).hasRight;
}
int snd_mixer_selem_get_playback_volume_range(snd_mixer_elem_t* e, long* min, long* max) {
    *min = ControlOf(e).min;
    *max = ControlOf(e).max;
    return 0;
}
int snd_mixer_selem_get_playback_volume(snd_mixer_elem_t* e, snd_mixer_selem_channel_id_t channel,
                                        long* value) {
    *value = channel == SND_MIXER_SCHN_FRONT_LEFT ? ControlOf(e).left : ControlOf(e).right;
    return 0;
}
int snd_mixer_selem_get_playback_switch(snd_mixer_elem_t* e, snd_mixer_selem_channel_id_t channel,
                                        int* value) {
    *value = channel == SND_MIXER_SCHN_FRONT_LEFT ? ControlOf(e).isLeftOn : ControlOf(e).isRightOn;
    return 0;
}

}  // extern "C"
