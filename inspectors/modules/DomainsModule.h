#pragma once

#include "frame/Adapters.h"
#include "system/Domains.h"

/// The domains of special folders.
class DomainsModule {
    using Domain = GlobalProperty<domain>;

    TypeRecord<domain> type{"domain"};
    Domain system{"system domain", "system domains", "domain", domain_of_world<kSystemDomain>};
    Domain local{"local domain", "local domains", "domain", domain_of_world<kLocalDomain>};
    Domain user{"user domain", "user domains", "domain", domain_of_world<kUserDomain>};
    Domain network{"network domain", "network domains", "domain", domain_of_world<kNetworkDomain>};
    Domain classic{"classic domain", "classic domains", "domain", domain_of_world<kClassicDomain>};
    Domain onSystemDisk{"on system disk domain", "on system disk domains", "domain",
                        domain_of_world<kOnSystemDisk>};
    Domain onAppropriateDisk{"on appropriate disk domain", "on appropriate disk domains", "domain",
                             domain_of_world<kOnAppropriateDisk>};
};
