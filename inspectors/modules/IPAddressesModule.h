#pragma once

#include "frame/Adapters.h"
#include "system/IPAddresses.h"

/// Addresses of the Internet.
class IPAddressesModule {
    TypeRecord<ip_address> type{"ip address"};
    RelationEqual<ip_address, ip_address> equal{"ip address", "ip address"};
    NamedGlobalProperty<ip_address> ofText{"ip address", "ip addresses", "ip address", ip_address_of};
};
