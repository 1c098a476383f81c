#pragma once

#include "frame/Adapters.h"
#include "system/Gestalt.h"

/// The machine and its system: memory, processor, versions, names.
class GestaltModule {
    using Number = GlobalProperty<integer>;
    using Truth = GlobalProperty<boolean>;
    using Version = GlobalProperty<MacVersion>;

    Number physicalRam{"physical ram", "physical rams", "integer", phys_ram_of};
    Number logicalRam{"logical ram", "logical rams", "integer", log_ram_of};
    Truth powerPC{"powerpc", "powerpcs", "boolean", native_processor};
    Truth virtualMemory{"virtual memory", "virtual memories", "boolean", virtual_mem};
    Version quickdraw{"quickdraw version", "quickdraw versions", "version", qd_version_of};
    Version system{"system version", "system versions", "version", sys_version_of};
    Version rom{"rom version", "rom versions", "version", rom_version_of};
    Number machineType{"machine type", "machine types", "integer", machine_type_of};
    Number keyboardType{"keyboard type", "keyboard types", "integer", keyboard_type_of};
    Number nubusMap{"nubus map", "nubus maps", "integer", nubus_map_of};
    Version nameRegistry{"name registry version", "name registry versions", "version", name_registry_of};
    Number cpuSpeed{"cpu speed", "cpu speeds", "integer", cpu_speed_of};
    GlobalProperty<inspector_string> machineName{"machine name", "machine names", "string", machine_name_of};
};
