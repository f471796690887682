#include "session/settings_table.h"
#include "tools/process_survey.h"

#include <iostream>

int main(int argc, char** argv)
{
    using namespace tarvo;
    try {
        const ProcessOptions options = read_process_options({argv + 1, static_cast<std::size_t>(argc - 1)});
        if (options.help) {
            std::cout << process_usage();
            return kDone;
        }
        if (options.help_settings) {
            std::cout << settings_manual_text();
            return kDone;
        }
        if (options.version) {
            std::cout << "tarvo-process " TARVO_VERSION "\n";
            return kDone;
        }
        return process_survey(options);
    } catch (const UsageError& fault) {
        std::cerr << "tarvo-process: " << fault.what() << "\nTry: tarvo-process --help\n";
        return kWrongUsage;
    } catch (const std::exception& fault) {
        std::cerr << "tarvo-process: " << fault.what() << '\n';
        return kFailed;
    }
}
