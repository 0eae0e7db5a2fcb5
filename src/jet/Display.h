// Display.h: the values of all types of columns as texts.
// Fails by: DatabaseError for a value cut short, and for the types whose values are not understood.
#pragma once
#include "jet/TableDefinition.h"

namespace jet {

// A value for a person to read: numbers plain, dates as 2007-04-03 10:15:00, bytes in hexadecimal.
Text DisplayText(const Column& column, ByteView value);

} // namespace jet
