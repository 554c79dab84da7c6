// Reading a settings store without touching it.

#include <sqlite3.h>

#include <array>
#include <memory>
#include <system_error>

#include "common/code_page.h"
#include "common/text.h"
#include "config/sqlite_store.h"

namespace norvane {

namespace {

namespace fs = std::filesystem;

/// How long a writer's transaction is waited for.
constexpr int busy_timeout_ms = 5000;

using Connection = std::unique_ptr<sqlite3, int (*)(sqlite3*)>;
using Statement = std::unique_ptr<sqlite3_stmt, int (*)(sqlite3_stmt*)>;

/// Size and time of what a store consists of: equal before and after reading, nobody wrote.
struct Store_State {
    struct Part {
        std::uintmax_t size = 0;
        fs::file_time_type written;
        bool operator==(const Part&) const = default;
    };
    explicit Store_State(const fs::path& file) {
        for (const auto* suffix : {"", "-wal"}) {
            fs::path part = file;
            part += suffix;
            std::error_code failure;
            const auto size = fs::file_size(part, failure);
            if (!failure)
                parts[*suffix == '\0' ? 0 : 1] = {size, fs::last_write_time(part, failure)};
        }
    }
    [[nodiscard]] bool Has_Log() const { return parts[1].size > 0; }
    bool operator==(const Store_State&) const = default;

    std::array<Part, 2> parts;
};

/// The file as SQLite's URI; "?", "#" and "%" mean something there.
std::string Uri_Of(const fs::path& file, const char* mode) {
    std::string uri = "file:";
    for (const char c : file.string()) {
        if (c == '?')
            uri += "%3f";
        else if (c == '#')
            uri += "%23";
        else if (c == '%')
            uri += "%25";
        else
            uri += c;
    }
    return uri + "?" + mode;
}

/// `mode`: "immutable=1" reads the database file alone and needs nothing beside it; "mode=ro" reads
/// what stands in its log too, and takes part in the locking.
Store_Snapshot Read_As(const fs::path& file, const char* mode) {
    Store_Snapshot snapshot;
    sqlite3* opened = nullptr;
    int result = sqlite3_open_v2(Uri_Of(file, mode).c_str(), &opened,
                                 SQLITE_OPEN_READONLY | SQLITE_OPEN_URI, nullptr);
    const Connection connection(opened, sqlite3_close_v2);
    sqlite3_stmt* prepared = nullptr;
    if (result == SQLITE_OK) {
        sqlite3_busy_timeout(opened, busy_timeout_ms);
        result = sqlite3_prepare_v2(
            opened, "SELECT section, key, value FROM settings WHERE application = ?1", -1,
            &prepared, nullptr);
    }
    const Statement statement(prepared, sqlite3_finalize);
    if (result == SQLITE_OK) {
        const std::string application(product_name);
        sqlite3_bind_text(prepared, 1, application.c_str(), -1, SQLITE_TRANSIENT);
        const auto column = [prepared](int place) {
            const auto* text = sqlite3_column_text(prepared, place);
            const auto size = static_cast<std::size_t>(sqlite3_column_bytes(prepared, place));
            return text == nullptr ? std::string()
                                   : From_Utf8({reinterpret_cast<const char*>(text), size});
        };
        while ((result = sqlite3_step(prepared)) == SQLITE_ROW)
            snapshot.values.push_back({column(0), column(1), column(2)});
    }
    if (result != SQLITE_DONE) {
        snapshot.trouble = From_Path(file) + ": " +
                           (opened != nullptr ? sqlite3_errmsg(opened) : sqlite3_errstr(result));
    }
    return snapshot;
}

}  // namespace

Store_Snapshot Read_Store(const fs::path& file) {
    std::error_code failure;
    // An empty file is what a start leaves that was broken off, and a store without values.
    if (!fs::exists(file, failure) && !failure)
        return {};
    const fs::path whole = fs::absolute(file);
    const Store_State before(whole);
    if (before.parts[0].size == 0 && !before.Has_Log() && fs::is_regular_file(whole, failure))
        return {};
    if (!before.Has_Log()) {
        Store_Snapshot snapshot = Read_As(whole, "immutable=1");
        if (Store_State(whole) == before)
            return snapshot;
    }
    Store_Snapshot snapshot = Read_As(whole, "mode=ro");
    if (snapshot.trouble.empty())
        return snapshot;
    // Where nothing can be put beside the file, its log is out of reach.
    Store_Snapshot alone = Read_As(whole, "immutable=1");
    if (alone.values.size() <= snapshot.values.size())
        return snapshot;
    alone.trouble = snapshot.trouble + "; what was written last may be missing";
    return alone;
}

}  // namespace norvane
