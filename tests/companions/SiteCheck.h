#pragma once

#include <QString>
#include <QStringList>

/// Every reference of every page below a folder that leads to no file there, as "page: reference". Letter
/// case counts. Fragments are looked up in the page that they name.
QStringList DeadLinks(const QString& strNativeFolder);

/// Pages whose frame is not whole: main and footer are not where the frame has them.
QStringList BrokenFrames(const QString& strNativeFolder);
