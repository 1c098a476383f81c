#pragma once

#include "frame/Adapters.h"
#include "system/InternetConfig.h"

/// The user's Internet settings.
class InternetConfigModule {
    TypeRecord<InternetConfig> type{"internetconfig"};
    GlobalProperty<InternetConfig> settings{"internet config", "internet configs", "internetconfig",
                                            InternetConfig_of};
    Property<InternetConfig, inspector_string> email{"email", "emails", "internetconfig", "string", email_of};
    Property<InternetConfig, inspector_string> signature{"signature", "signatures", "internetconfig",
                                                         "string", signature_of};
    Property<InternetConfig, boolean> socks{"socks", "sockses", "internetconfig", "boolean", socks_of};
    Property<InternetConfig, folder> download{"download folder", "download folders", "internetconfig",
                                              "folder", download_of};
    Property<InternetConfig, inspector_string> font{"font", "fonts", "internetconfig", "string", font_of};
    NamedProperty<InternetConfig, file_signature> helper{"helper", "helpers", "internetconfig",
                                                         "file signature", helper_of};
};
