#pragma once

#include <QByteArray>

// A machine hive as other programs fill it: `keys` keys of `valuesPerKey`
// string values each, half of them sorting before the suite's keys and half
// after, in the form the tool itself writes.
QByteArray foreignMachineHive(int keys, int valuesPerKey);
