#include "cli/command_line.h"
#include "cli/listing_commands.h"
#include "cli/log_commands.h"

namespace norvane {

namespace {

constexpr const char* row_help = "The row's number in \"log rows\", from 1";

void Add_Row(CLI::App* command, Words& words) {
    command->add_option("ROW", words.row, row_help)->required()->check(CLI::Range(1, 999999999));
}

void Add_Date(CLI::App* command, Words& words) {
    command->add_option("DATE", words.date, "The row's date: refused when it has another one");
}

void Add_Lists(CLI::App* log, Words& words, Work& work) {
    auto* rows = log->add_subcommand("rows", "List a log's flights");
    rows->add_option("NAME", words.name, "The log; the active one unless given");
    rows->callback([&] {
        work = {Access::look, [&](Console&, Session& open) { return Log_Rows(open, words.name); }};
    });
    auto* totals = log->add_subcommand("totals", "Block and flight time of a log");
    totals->add_option("NAME", words.name, "The log; the active one unless given");
    totals->callback([&] {
        work = {Access::look,
                [&](Console&, Session& open) { return Log_Totals_Line(open, words.name); }};
    });
    log->add_subcommand("list", "List the logs, the active one marked")->callback([&] {
        work = {Access::look, [&](Console&, Session& open) { return Log_List(open); }};
    });
}

/// A command on the log of one name.
void Add_Named(CLI::App* command, Words& words, Work& work,
               int (*run)(Session&, const std::string&)) {
    command->add_option("NAME", words.name, "The log's name")->required();
    command->callback([&words, &work, run] {
        work = {Access::write,
                [&words, run](Console&, Session& open) { return run(open, words.name); }};
    });
}

void Add_Row_Commands(CLI::App* log, Words& words, Work& work) {
    auto* copy = log->add_subcommand("copy", "Copy a flight of the active log to another log");
    Add_Row(copy, words);
    copy->add_option("NAME", words.name, "The other log")->required();
    Add_Date(copy, words);
    copy->callback([&] {
        work = {Access::write, [&](Console&, Session& open) {
                    return Log_Copy(open, {words.row, words.date}, words.name);
                }};
    });
    auto* remove = log->add_subcommand("delete", "Delete a flight of the active log (asks)");
    Add_Row(remove, words);
    Add_Date(remove, words);
    remove->callback([&] {
        work = {Access::write, [&](Console&, Session& open) {
                    return Log_Delete(open, {words.row, words.date});
                }};
    });
    auto* plan = log->add_subcommand("import-plan", "Take a flight plan into a flight (asks)");
    Add_Row(plan, words);
    plan->add_option("FILE", words.name, "The simulator's flight plan")->required();
    plan->callback([&] {
        work = {Access::write, [&](Console&, Session& open) {
                    return Log_Import_Plan(open, {words.row, {}}, words.name);
                }};
    });
}

void Add_Corrections(CLI::App* log, Words& words, Work& work) {
    auto* history =
        log->add_subcommand("history", "List what was corrected in a flight, oldest first");
    Add_Row(history, words);
    history->add_option("--log", words.name, "The log; the active one unless given");
    history->callback([&] {
        work = {Access::look, [&](Console&, Session& open) {
                    return Log_History(open, {words.row, {}}, words.name);
                }};
    });
    auto* flight = log->add_subcommand("flight", "Print the ID of a flight's recording");
    Add_Row(flight, words);
    flight->add_option("--log", words.name, "The log; the active one unless given");
    flight->callback([&] {
        work = {Access::look, [&](Console&, Session& open) {
                    return Log_Flight(open, {words.row, {}}, words.name);
                }};
    });
    auto* undo = log->add_subcommand(
        "undo", "Take back the last correction of a flight of the active log (asks)");
    Add_Row(undo, words);
    Add_Date(undo, words);
    undo->callback([&] {
        work = {Access::write, [&](Console&, Session& open) {
                    return Log_Undo(open, {words.row, words.date});
                }};
    });
}

/// Who only lists needs no lock, and works beside a flight.
void Add_Recover(CLI::App* log, Words& words, Work& work) {
    auto* recover = log->add_subcommand(
        "recover",
        "List the flights and edits that are in \".unsaved\" files and in no log; with numbers, "
        "or --yes for all, add them to the active log");
    recover->add_option("ROW", words.rows, "Numbers in that list, from 1; with none it is printed")
        ->check(CLI::Range(1, 999999999));
    recover->callback([&] {
        const bool takes = words.yes || !words.rows.empty();
        work = {takes ? Access::write : Access::look, [&](Console&, Session& open) {
                    return Log_Recover(open, words.yes && words.rows.empty(), words.rows);
                }};
    });
}

void Add_Reports(CLI::App* log, Words& words, Work& work) {
    auto* report = log->add_subcommand("report", "Write the logbook of the active log");
    report
        ->add_option("--fields", words.fields,
                     "Captions or column numbers (from 0), separated by commas; all unless given")
        ->delimiter(',');
    report->callback([&] {
        work = {Access::look,
                [&](Console&, Session& open) { return Log_Report(open, words.fields); }};
    });
    log->add_subcommand("statistics", "Write the statistics of the active log")->callback([&] {
        work = {Access::look, [&](Console&, Session& open) { return Log_Statistics(open); }};
    });
    auto* flight = log->add_subcommand("acars-report", "Write the report of one flight");
    Add_Row(flight, words);
    flight->callback([&] {
        work = {Access::look, [&](Console&, Session& open) {
                    return Log_ACARS_Report(open, {words.row, {}});
                }};
    });
}

}  // namespace

void Add_Log_Commands(CLI::App& app, Words& words, Work& work) {
    auto* log = app.add_subcommand("log", "The flight logs")->require_subcommand(1);
    Add_Lists(log, words, work);
    Add_Named(log->add_subcommand("new", "Make an empty log"), words, work, Log_New);
    Add_Named(log->add_subcommand("remove", "Delete a log (asks)"), words, work, Log_Remove);
    Add_Named(log->add_subcommand("use", "Make a log the active one"), words, work, Log_Use);
    Add_Row_Commands(log, words, work);
    Add_Corrections(log, words, work);
    Add_Recover(log, words, work);
    Add_Reports(log, words, work);
    auto* hours = app.add_subcommand("hours", "Block time of the active log by aircraft type");
    hours->add_flag("--report", words.report, "Write them as a page");
    hours->callback([&] {
        work = {Access::look, [&](Console&, Session& open) { return Hours(open, words.report); }};
    });
    auto* convert = app.add_subcommand("convert", "Convert the simulator's own flight log");
    convert->add_option("FILE", words.value, "The simulator's log (.log)")->required();
    convert->add_option("NAME", words.name, "Name of the log to make")->required();
    convert->callback([&] {
        work = {Access::look, [&](Console&, Session& open) {
                    return Convert_Log(open, words.value, words.name);
                }};
    });
}

}  // namespace norvane
