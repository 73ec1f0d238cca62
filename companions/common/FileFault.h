#pragma once

#include <QString>

class QFileDevice;

/// What went wrong with a file that was being read or written, as a person should be told it.
QString FileFaultText(const QFileDevice& file);
