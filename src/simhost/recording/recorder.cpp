#include "simhost/recording/recorder.h"

#include <poll.h>

#include <algorithm>
#include <array>
#include <map>
#include <optional>

#include "common/run_error.h"
#include "common/services.h"
#include "simhost/recording/recording.h"
#include "simlink/catalogue.h"
#include "simlink/mod_fsuipc.h"
#include "simlink/socket_transport.h"

namespace norvane {

namespace {

/// Variables that clients write and no simulator tells.
constexpr auto written_variables = std::to_array<Variable>(
    {Variable::display_control, Variable::library_version, Variable::display_text});

/// What is recorded: offset and size, in the order of offsets.
using Fields = std::map<std::uint32_t, std::uint32_t>;

Fields All_Fields() {
    Fields fields;
    for (const Variable_Row& row : All_Variables()) {
        if (std::find(written_variables.begin(), written_variables.end(), row.id) !=
            written_variables.end())
            continue;
        const int engines = row.stride == 0 ? 1 : most_engines;
        for (int engine = 1; engine <= engines; ++engine)
            fields[Offset_Of(row.id, engine)] = row.size;
    }
    // With its check pattern, so that a player needs to know nothing of it.
    fields[Offset_Of(Variable::simulator_version)] = 4;
    for (const Tank_Row& tank : All_Tanks()) {
        fields[tank.level_offset] = 4;
        fields[tank.capacity_offset] = 4;
    }
    return fields;
}

/// All fields in one exchange; empty when the simulator is gone.
std::optional<std::vector<Recorded_Change>> Sample(modFSUIPC& link, const Fields& fields,
                                                   int& result) {
    std::vector<Recorded_Change> sample;
    sample.reserve(fields.size());
    for (const auto& [offset, size] : fields) {
        auto& change = sample.emplace_back(Recorded_Change{offset, std::vector<std::byte>(size)});
        if (!link.IPC_Read(offset, size, change.bytes.data(), result))
            return std::nullopt;
    }
    if (!link.IPC_Process(result))
        return std::nullopt;
    return sample;
}

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
    const Fields fields = All_Fields();
    const auto start = clock.Monotonic();
    auto sample = Sample(link, fields, result);
    if (!sample)
        Fail(result);
    Recording_Writer writer(options.file);
    writer.Add({0, *sample});
    for (auto next = start + options.every; !Wait_Until(clock, next, stop);
         next = std::max(next + options.every, clock.Monotonic())) {
        const std::chrono::duration<double> passed = clock.Monotonic() - start;
        const auto newer = Sample(link, fields, result);
        if (!newer)
            return;
        Recorded_Moment moment{passed.count(), {}};
        for (std::size_t i = 0; i < newer->size(); ++i) {
            if ((*newer)[i].bytes != (*sample)[i].bytes)
                moment.changes.push_back((*newer)[i]);
        }
        writer.Add(moment);
        sample = newer;
    }
}

}  // namespace norvane
