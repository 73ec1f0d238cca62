#pragma once

#include "course/CourseInfo.h"

#include <QString>

/// "DataInfo.dti": the figures that wait for the server. Anything but one short line of three pieces reads as
/// the empty form, whatever the file's size.
CourseFigures ReadDataInfo(const QString& strPath);
/// Throws Torvane::CRunException when the file can't be written.
void WriteDataInfo(const QString& strPath, const CourseFigures& figures);
