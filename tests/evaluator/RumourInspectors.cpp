// An inspector library whose phrases can be read in two ways.

#include "frame/Adapters.h"

namespace {

inspector_string heard() { return {reinterpret_cast<unsigned char const*>("abc"), 3}; }
integer seven() { return 7; }
inspector_string noise_of(integer const&) { return heard(); }
integer doubled(integer const& number) { return 2 * number; }
boolean never(unsigned char const*, unsigned long) { return false; }
boolean never_numbered(unsigned long long) { return false; }

struct Module {
    GlobalProperty<inspector_string> rumour{"rumour", "rumours", "string", heard};
    NamedGlobalProperty<boolean> rumourContains{"rumour contains", "rumours contain", "boolean", never};
    GlobalProperty<integer> gossip{"gossip", "gossips", "integer", seven};
    NamedGlobalProperty<boolean> gossipContains{"gossip contains", "gossips contain", "boolean", never};
    GlobalProperty<inspector_string> hearsay{"hearsay", "hearsays", "string", heard};
    NumberedGlobalProperty<boolean> hearsayStartsWith{"hearsay starts with", "hearsays starting with",
                                                      "boolean", never_numbered};
    GlobalProperty<integer> tally{"tally", "tallies", "integer", seven};
    GlobalProperty<integer> tallyMod{"tally mod", "tallies mod", "integer", seven};
    Cast<integer, inspector_string> noise{"noise", "integer", "string", noise_of};
    Cast<integer, integer> noiseContains{"noise contains", "integer", "integer", doubled};
    NamedGlobalProperty<boolean> alone{"whisper contains", "whispers contain", "boolean", never};
};

Module module;

}  // namespace
