#pragma once

#include <QString>

/// A course's identity on the course server.
struct CCourseInfo {
    qint32 Id = 0;
    QString Name;
    QString TeacherName;

    bool IsValid() const { return Id >= 1 && !Name.isEmpty() && !TeacherName.isEmpty(); }
    bool operator==(const CCourseInfo&) const = default;
};

/// The figures of a course that travel to the server and wait in "DataInfo.dti" meanwhile. The values below
/// are the empty form.
struct CourseFigures {
    qint32 Count = -1;
    double Size = -1.0;
    qint32 Changed = -1;
};

/// Kinds of a status report.
namespace StatusType {
inline constexpr int c_nHeartbeat = 8;
inline constexpr int c_nOpened = 264;
inline constexpr int c_nClosed = 520;
} // namespace StatusType
