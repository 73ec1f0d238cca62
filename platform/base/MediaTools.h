#pragma once

#include <QString>
#include <QStringList>

/// Whether what plays and what records lectures is at hand. Looks for files alone: nothing is loaded or
/// started.
namespace Platform {

/// A back end that plays video with pictures and sound: the one that the environment names, or the toolkit's
/// own. pluginFolders as the application knows them, native form.
bool HasMediaPlayer(const QStringList& pluginFolders);

/// An encoder that can be started by its name.
bool HasMediaEncoder();

} // namespace Platform
