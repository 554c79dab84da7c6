#include "simhost/recording/recorder.h"

#include <poll.h>

#include <algorithm>
#include <vector>

#include "common/run_error.h"
#include "common/services.h"
#include "simlink/mod_fsuipc.h"
#include "simlink/recorded_block.h"
#include "simlink/recording.h"
#include "simlink/socket_transport.h"

namespace norvane {

namespace {

bool Wait_Until(Clock& clock, std::chrono::microseconds moment, int stop) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(moment - clock.Monotonic());
    pollfd entry{stop, POLLIN, 0};
    return ::poll(&entry, 1, static_cast<int>(std::max<std::int64_t>(left.count(), 0))) > 0;
}

[[noreturn]] void Fail(int result) {
    throw Run_Error(error_number::device_io_error, modFSUIPC::IPC_ErrorText(result));
}

}  // namespace

void Record(const Record_Options& options, Clock& clock, int stop) {
    Socket_Transport transport(options.from);
    modFSUIPC link(transport, clock);
    int result = ipc_result::okay;
    if (!link.IPC_Open(0, result))
        Fail(result);
    const std::vector<Recorded_Field> fields = Recorded_Fields();
    const auto start = clock.Monotonic();
    std::vector<Recorded_Change> sample;
    if (!Read_Fields(link, fields, true, sample, result))
        Fail(result);
    Recording_Writer writer(options.file);
    Recorded_Image image;
    const auto add = [&](double seconds) {
        Recorded_Moment moment{seconds, {}};
        for (const Recorded_Change& field : sample)
            image.Take(field, moment.changes);
        writer.Add(moment);
    };
    add(0);
    for (auto next = start + options.every; !Wait_Until(clock, next, stop);
         next = std::max(next + options.every, clock.Monotonic())) {
        const std::chrono::duration<double> passed = clock.Monotonic() - start;
        if (!Read_Fields(link, fields, true, sample, result))
            return;
        add(passed.count());
    }
}

}  // namespace norvane
