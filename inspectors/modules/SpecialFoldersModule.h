#pragma once

#include "frame/Adapters.h"
#include "system/SpecialFolders.h"

/// The rows of one type of special folder: that of the system domain, and that of any domain.
template <OSType type>
class SpecialFolderRecords {
    GlobalProperty<folder> ofSystem;
    Property<domain, folder> ofDomain;

  public:
    SpecialFolderRecords(char const* singular, char const* plural)
        : ofSystem(singular, plural, "folder", special_folder<type>),
          ofDomain(singular, plural, "domain", "folder", special_folder_of_domain<type>) {}
};

/// Special folders, and frameworks by their names.
class SpecialFoldersModule {
    NamedGlobalProperty<folder> framework{"framework", "frameworks", "folder", framework_folder};
    NamedProperty<domain, folder> frameworkOfDomain{"framework", "frameworks", "domain", "folder",
                                                    framework_folder_of_domain};
    SpecialFolderRecords<0x6D616373> systemFolder{"system folder", "system folders"};
    SpecialFolderRecords<0x616D6E75> appleMenuItemsFolder{"apple menu items folder",
                                                          "apple menu items folders"};
    SpecialFolderRecords<0x6374726C> controlPanelsFolder{"control panels folder", "control panels folders"};
    SpecialFolderRecords<0x6465736B> desktopFolder{"desktop folder", "desktop folders"};
    SpecialFolderRecords<0x6578746E> extensionsFolder{"extensions folder", "extensions folders"};
    SpecialFolderRecords<0x666F6E74> fontsFolder{"fonts folder", "fonts folders"};
    SpecialFolderRecords<0x70726566> preferencesFolder{"preferences folder", "preferences folders"};
    SpecialFolderRecords<0x70726E74> printmonitorDocumentsFolder{"printmonitor documents folder",
                                                                 "printmonitor documents folders"};
    SpecialFolderRecords<0x73747274> startupItemsFolder{"startup items folder", "startup items folders"};
    SpecialFolderRecords<0x73686466> shutdownItemsFolder{"shutdown items folder", "shutdown items folders"};
    SpecialFolderRecords<0x74656D70> temporaryItemsFolder{"temporary items folder",
                                                          "temporary items folders"};
    SpecialFolderRecords<0x73747244> disabledStartupItemsFolder{"disabled startup items folder",
                                                                "disabled startup items folders"};
    SpecialFolderRecords<0x65787444> disabledExtensionsFolder{"disabled extensions folder",
                                                              "disabled extensions folders"};
    SpecialFolderRecords<0x61707073> applicationsFolder{"applications folder", "applications folders"};
    SpecialFolderRecords<0x646F6373> documentsFolder{"documents folder", "documents folders"};
    SpecialFolderRecords<0x666C6E74> chewableItemsFolder{"chewable items folder", "chewable items folders"};
    SpecialFolderRecords<0x61737570> applicationSupportFolder{"application support folder",
                                                              "application support folders"};
    SpecialFolderRecords<0xC4746578> textEncodingsFolder{"text encodings folder", "text encodings folders"};
    SpecialFolderRecords<0xC4686C70> helpFolder{"help folder", "help folders"};
    SpecialFolderRecords<0xC46E6574> internetPluginsFolder{"internet plugins folder",
                                                           "internet plugins folders"};
    SpecialFolderRecords<0xC46D6F64> modemScriptsFolder{"modem scripts folder", "modem scripts folders"};
    SpecialFolderRecords<0x70706466> printerDescriptionsFolder{"printer descriptions folder",
                                                               "printer descriptions folders"};
    SpecialFolderRecords<0xC4707264> printerDriversFolder{"printer drivers folder",
                                                          "printer drivers folders"};
    SpecialFolderRecords<0xC4736372> scriptingAdditionsFolder{"scripting additions folder",
                                                              "scripting additions folders"};
    SpecialFolderRecords<0xC46C6962> sharedLibrariesFolder{"shared libraries folder",
                                                           "shared libraries folders"};
    SpecialFolderRecords<0x66766F63> voicesFolder{"voices folder", "voices folders"};
    SpecialFolderRecords<0x73646576> controlStripModulesFolder{"control strip modules folder",
                                                               "control strip modules folders"};
    SpecialFolderRecords<0x617374C4> assistantsFolder{"assistants folder", "assistants folders"};
    SpecialFolderRecords<0x757469C4> utilitiesFolder{"utilities folder", "utilities folders"};
    SpecialFolderRecords<0x616578C4> appleExtrasFolder{"apple extras folder", "apple extras folders"};
    SpecialFolderRecords<0x636D6E75> contextualMenuItemsFolder{"contextual menu items folder",
                                                               "contextual menu items folders"};
    SpecialFolderRecords<0x6D6F72C4> macosReadMeFolder{"macos read me folder", "macos read me folders"};
    SpecialFolderRecords<0x70726F66> colorsyncProfilesFolder{"colorsync profiles folder",
                                                             "colorsync profiles folders"};
    SpecialFolderRecords<0x74686D65> themesFolder{"themes folder", "themes folders"};
    SpecialFolderRecords<0x66617673> favoritesFolder{"favorites folder", "favorites folders"};
    SpecialFolderRecords<0x63747244> disabledControlPanelsFolder{"disabled control panels folder",
                                                                 "disabled control panels folders"};
    SpecialFolderRecords<0x6D616344> disabledSystemExtensionsFolder{"disabled system extensions folder",
                                                                    "disabled system extensions folders"};
    SpecialFolderRecords<0x73686444> disabledShutdownItemsFolder{"disabled shutdown items folder",
                                                                 "disabled shutdown items folders"};
    SpecialFolderRecords<0x77616C6B> locationManagerModulesFolder{"location manager modules folder",
                                                                  "location manager modules folders"};
    SpecialFolderRecords<0x74726970> locationManagerPreferencesFolder{"location manager preferences folder",
                                                                      "location manager preferences folders"};
    SpecialFolderRecords<0x66616C6C> locationsFolder{"locations folder", "locations folders"};
    SpecialFolderRecords<0x7364736B> classicFolder{"classic folder", "classic folders"};
    SpecialFolderRecords<0x64746F70> domainTopFolder{"domain top folder", "domain top folders"};
    SpecialFolderRecords<0x646C6962> domainLibraryFolder{"domain library folder", "domain library folders"};
    SpecialFolderRecords<0x73796E63> colorSyncFolder{"color sync folder", "color sync folders"};
    SpecialFolderRecords<0x696D7072> printersFolder{"printers folder", "printers folders"};
    SpecialFolderRecords<0x73706368> speechFolder{"speech folder", "speech folders"};
    SpecialFolderRecords<0x63617262> carbonFolder{"carbon folder", "carbon folders"};
    SpecialFolderRecords<0x696E666F> documentationFolder{"documentation folder", "documentation folders"};
    SpecialFolderRecords<0x64646F63> developerDocsFolder{"developer docs folder", "developer docs folders"};
    SpecialFolderRecords<0x64657668> developerHelpFolder{"developer help folder", "developer help folders"};
    SpecialFolderRecords<0x69737364> downloadFolder{"download folder", "download folders"};
    SpecialFolderRecords<0x75746D70> userTempFolder{"user temp folder", "user temp folders"};
    SpecialFolderRecords<0x63616368> cacheFolder{"cache folder", "cache folders"};
    SpecialFolderRecords<0x6672616D> frameworkFolder{"framework folder", "framework folders"};
    SpecialFolderRecords<0x7066726D> privateFrameworkFolder{"private framework folder",
                                                            "private framework folders"};
    SpecialFolderRecords<0x64657666> developerFolder{"developer folder", "developer folders"};
    SpecialFolderRecords<0x73736E64> soundFolder{"sound folder", "sound folders"};
    SpecialFolderRecords<0x636D7064> componentFolder{"component folder", "component folders"};
    SpecialFolderRecords<0x77636D70> quicktimeFolder{"quicktime folder", "quicktime folders"};
    SpecialFolderRecords<0x63737276> coreServicesFolder{"core services folder", "core services folders"};
    SpecialFolderRecords<0x6164696F> audioFolder{"audio folder", "audio folders"};
    SpecialFolderRecords<0x6B657874> kernelExtensionsFolder{"kernel extensions folder",
                                                            "kernel extensions folders"};
    SpecialFolderRecords<0x75737273> usersFolder{"users folder", "users folders"};
    SpecialFolderRecords<0x63757372> currentUserFolder{"current user folder", "current user folders"};
    SpecialFolderRecords<0x73646174> sharedFolder{"shared folder", "shared folders"};
    SpecialFolderRecords<0x76736664> volumeSettingsFolder{"volume settings folder",
                                                          "volume settings folders"};
    SpecialFolderRecords<0xC46C6F63> localesFolder{"locales folder", "locales folders"};
    SpecialFolderRecords<0x72637074> receiptsFolder{"receipts folder", "receipts folders"};
    CacheRecord caches{ClearSpecialFolderCaches};
};
