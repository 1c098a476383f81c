#pragma once

#include "frame/Adapters.h"
#include "versions/Country.h"

/// Regions by their names.
class CountryModule {
    TypeRecord<country> type{"country"};
    NamedGlobalProperty<country> named{"country", "countries", "country", country_of};
    RelationEqual<country, country> equal{"country", "country"};
};
