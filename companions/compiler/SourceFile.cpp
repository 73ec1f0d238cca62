#include "companions/compiler/SourceFile.h"

#include "companions/compiler/Texts.h"
#include "foundation/Exceptions.h"

#include <QFile>

QByteArray ReadSourceFile(const QString& strNativePath) {
    QFile file(strNativePath);
    QByteArray bytes;
    if (file.open(QIODevice::ReadOnly))
        bytes = file.readAll();
    if (file.error() != QFileDevice::NoError)
        throw Torvane::CRunException(CompilerText::c_strCannotRead.arg(strNativePath, file.errorString()));
    return bytes;
}
