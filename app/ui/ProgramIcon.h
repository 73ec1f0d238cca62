#pragma once

#include <QIcon>

/// The program's icon in its four sizes, read when it is first drawn.
QIcon LoadProgramIcon();
