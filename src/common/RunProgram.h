#pragma once

#include <QString>
#include <string>

class QWidget;

namespace brackwell {

/// Opens a document with the program that the system associates with it; `form` is the window that asks. A
/// failure is told to the user here, so callers carry on either way.
void RunProgram(QWidget* form, const std::string& path);

/// The same for a web address.
void RunWebAddress(QWidget* form, const std::string& address);

/// What the user is told for a code of OpenDocument; empty where that is nothing, as after a success.
QString RunProgramMessage(int code);

}  // namespace brackwell
