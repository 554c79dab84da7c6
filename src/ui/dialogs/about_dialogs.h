#pragma once
// The about box, and the airline lookup of the settings. Each function draws its form whenever that
// opens, until `owner` is gone; the forms outlive it.

#include <QObject>

namespace norvane {

class Qt_Desktop;
class frmAbout;
class frmAirline;

void Draw(frmAbout& form, Qt_Desktop& desktop, QObject& owner);
void Draw(frmAirline& form, Qt_Desktop& desktop, QObject& owner);

}  // namespace norvane
