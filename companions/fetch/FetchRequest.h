#pragma once

#include <QByteArray>
#include <QString>

/// What the one argument asks for: "<address>,<target folder>".
struct FetchRequest {
    /// Raw bytes in the code page, as they go out: blanks and letters of any kind are not escaped.
    QByteArray Address;
    /// Native path without a separator at its end; its last name is the template's.
    QString TargetFolder;
    QString TemplateName;
};

/// Parts the argument. A template's name holds no comma, but the server's address before it and the folder
/// behind it may: the first comma of the query behind which a whole path stands, in native or in backslash
/// form, ends the address. Throws Torvane::CRunException.
FetchRequest ReadFetchArgument(const QString& strArgument);
