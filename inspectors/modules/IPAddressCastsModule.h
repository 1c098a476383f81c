#pragma once

#include "frame/Adapters.h"
#include "system/IPAddresses.h"

/// Addresses as text.
class IPAddressCastsModule {
    Cast<ip_address, inspector_string> asString{"string", "ip address", "string", IPasString};
};
