#pragma once
// What the commands on rows of the active log share: the row as the pilot names it, and the log
// held by its panel, without a window.

#include <cstddef>
#include <string>

#include "app/session.h"
#include "config/cls_app_settings.h"
#include "config/cls_va_settings.h"
#include "logentry/cls_log_entry.h"
#include "logpanel/uc_flight_log.h"

namespace norvane {

/// A row as the pilot names it. Texts are UTF-8.
struct Row_Choice {
    /// As `log rows` counts, from 1.
    std::size_t number = 0;
    /// The date that the row must have; empty: any.
    std::string date;
};

/// The row's index; raises when there is no such row, or when it has another date.
[[nodiscard]] std::size_t Checked_Row(const Log_Table& table, const Row_Choice& row,
                                      const Regional& regional);

/// The active log as its panel holds it, with one current row. Nothing of the layout is touched.
class Open_Log {
  public:
    /// Raises when the log cannot be read, here and below.
    explicit Open_Log(Session& session);
    /// Raises when `row` is not its row.
    Open_Log(Session& session, const Row_Choice& row);

    /// The current row in words.
    [[nodiscard]] std::string Flight() const;
    /// Saves, and says what there is to say of it.
    [[nodiscard]] bool Save();

    Services& services;
    clsAppSettings settings;
    clsVASettings airline;
    clsLogEntry entry;
    ucFlightLog panel;
};

}  // namespace norvane
