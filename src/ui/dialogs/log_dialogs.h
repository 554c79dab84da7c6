#pragma once
// The dialogs about flight logs: the field chooser, the log chooser, "Manage Flight Logs" and the
// conversion of a simulator's log. Each function draws its form whenever that opens, until `owner`
// is gone; the forms outlive it.

#include <QObject>

namespace norvane {

class Qt_Desktop;
class frmConvertLog;
class frmRecover;
class frmFlightLog;
class frmLog;
class frmReport;

void Draw(frmReport& form, Qt_Desktop& desktop, QObject& owner);
void Draw(frmLog& form, Qt_Desktop& desktop, QObject& owner);
void Draw(frmFlightLog& form, Qt_Desktop& desktop, QObject& owner);
void Draw(frmConvertLog& form, Qt_Desktop& desktop, QObject& owner);
void Draw(frmRecover& form, Qt_Desktop& desktop, QObject& owner);

}  // namespace norvane
