#include "companions/compiler/SourceFile.h"

#include "companions/compiler/Texts.h"
#include "foundation/Exceptions.h"

#include <QFile>

std::optional<QByteArray> ReadSourceText(const QString& strNativePath) {
    QFile file(strNativePath);
    QByteArray bytes;
    if (file.open(QIODevice::ReadOnly)) {
        if (file.size() > c_nMaxSourceText)
            return std::nullopt;
        bytes = file.read(file.size());
    }
    if (file.error() != QFileDevice::NoError)
        throw Torvane::CRunException(CompilerText::c_strCannotRead.arg(strNativePath, file.errorString()));
    return bytes;
}
