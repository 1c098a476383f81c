#pragma once

#include "frame/Adapters.h"
#include "system/Processes.h"

/// The processes of the current user, what is known of them, and their executable files.
class ProcessesModule {
    using Pid = Property<carbon_process, integer>;

    TypeRecord<carbon_process> type{"carbon proc"};
    NumberedGlobalProperty<carbon_process> numbered{"carbon process", "carbon processes", "carbon proc",
                                                    numbered_carbon_process_of_world};
    IteratedGlobalProperty<carbon_process_iterator, carbon_process> all{"carbon process", "carbon processes",
                                                                        "carbon proc"};
    Property<carbon_process, inspector_string> name{"name", "names", "carbon proc", "string",
                                                    name_of_carbon_process};
    Pid pid{"pid", "pids", "carbon proc", "integer", pid_of_carbon_process};
    Pid id{"id", "ids", "carbon proc", "integer", pid_of_carbon_process};
    Pid processId{"process id", "process ids", "carbon proc", "integer", pid_of_carbon_process};
    Property<carbon_process, filesystem_object> file{"file", "files", "carbon proc", "filesystem object",
                                                     file_of_carbon_process};
    IteratedGlobalProperty<running_app_iterator, filesystem_object> runningApplications{
        "running application", "running applications", "filesystem object"};
};
