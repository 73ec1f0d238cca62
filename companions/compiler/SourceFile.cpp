#include "companions/compiler/SourceFile.h"

#include "companions/compiler/Texts.h"
#include "foundation/Exceptions.h"
#include "foundation/Paths.h"
#include "foundation/Text.h"

#include <QFile>

using namespace Qt::StringLiterals;

bool IsPageFile(const QString& strName) {
    const QString strExtension = LowerAscii(Torvane::File::Extension(strName));
    return strExtension == ".htm"_L1 || strExtension == ".html"_L1 || strExtension == ".xhtml"_L1 ||
           strExtension == ".xht"_L1 || strExtension == ".shtml"_L1;
}

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

std::unique_lock<std::recursive_mutex> LockIfLarge(qint64 nBytes) {
    static std::recursive_mutex mutex;
    return nBytes < c_nLargePage ? std::unique_lock<std::recursive_mutex>() : std::unique_lock(mutex);
}
