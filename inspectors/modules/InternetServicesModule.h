#pragma once

#include "frame/Adapters.h"
#include "system/InternetConfig.h"

/// Services of the network, and what is known of them.
class InternetServicesModule {
    TypeRecord<ICService> type{"icservice"};
    Property<ICService, inspector_string> name{"name", "names", "icservice", "string", name_of};
    Property<ICService, integer> port{"port", "ports", "icservice", "integer", port_of};
    Property<ICService, boolean> tcp{"tcp", "tcps", "icservice", "boolean", tcp_of};
    Property<ICService, boolean> udp{"udp", "udps", "icservice", "boolean", udp_of};
};
