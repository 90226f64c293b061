#include "common/RunProgram.h"

#include <QWidget>

#include "common/Busy.h"
#include "common/MsgBox.h"
#include "platform/Launch.h"

namespace brackwell {

using namespace Qt::StringLiterals;

QString RunProgramMessage(int code) {
  switch (code) {
    case 2:
      return u"The specified file was not found."_s;
    case 3:
      return u"The specified path was not found."_s;
    case 5:
      return u"The operating system denied access to the specified file."_s;
    case 8:
      return u"There was not enough memory to complete the operation."_s;
    case 26:
      return u"A sharing violation occurred."_s;
    case 27:
      return u"The file name association is incomplete or invalid."_s;
    case 28:
      return u"The DDE transaction could not be completed because the request timed out."_s;
    case 29:
      return u"The DDE transaction failed."_s;
    case 30:
      return u"The DDE transaction could not be completed because other DDE transactions were being processed."_s;
    case 31:
      return u"There is no application associated with the given file name extension."_s;
    case 32:
      return u"The specified dynamic-link library was not found."_s;
    default:
      return {};
  }
}

namespace {

/// The handle of the frame around all: asking a window inside it for one would turn it into a native window.
void* OwnerHandle(const QWidget* form) {
  return form ? reinterpret_cast<void*>(form->window()->winId()) : nullptr;
}

void TellFailure(QWidget* form, int code) {
  const QString message = RunProgramMessage(code);
  if (!message.isEmpty()) MsgBox(form, message, MsgIcon::Exclamation, u"Run Program"_s);
}

}  // namespace

void RunProgram(QWidget* form, const std::string& path) {
  const BusyPointer busy;  // it may take a second
  TellFailure(form, OpenDocument(path, OwnerHandle(form)));
}

void RunWebAddress(QWidget* form, const std::string& address) {
  const BusyPointer busy;
  TellFailure(form, OpenWebAddress(address, OwnerHandle(form)));
}

}  // namespace brackwell
