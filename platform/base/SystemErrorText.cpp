#include "platform/base/FileCalls.h"

#include <array>
#include <cerrno>
#include <cstring>

namespace {

struct Reason {
    int nCode;
    const char16_t* szText;
};

/// What a person meets with files. The system's own texts are in her language only where its translations are
/// installed.
constexpr std::array c_reasons = {
    Reason{EACCES, u"没有权限"},
    Reason{EPERM, u"没有权限"},
    Reason{EROFS, u"磁盘是只读的"},
    Reason{ENOENT, u"文件或文件夹不存在"},
    Reason{ENOTDIR, u"路径中有一部分不是文件夹"},
    Reason{EISDIR, u"它是一个文件夹"},
    Reason{EEXIST, u"同名的文件或文件夹已经存在"},
    Reason{ENOTEMPTY, u"文件夹不是空的"},
    Reason{ENAMETOOLONG, u"文件名太长"},
    Reason{ELOOP, u"符号链接太多"},
    Reason{ENOSPC, u"磁盘空间不足"},
    Reason{EDQUOT, u"磁盘空间不足"},
    Reason{EFBIG, u"文件太大"},
    Reason{EIO, u"磁盘读写出错"},
    Reason{EMFILE, u"打开的文件太多"},
    Reason{ENFILE, u"打开的文件太多"},
    Reason{ETXTBSY, u"文件正在使用"},
    Reason{EBUSY, u"文件正在使用"},
    Reason{EXDEV, u"不在同一个磁盘上"},
    Reason{ESTALE, u"网络磁盘已断开"},
    Reason{ENOMEM, u"内存不足"},
};

} // namespace

QString Platform::SystemErrorText(int nCode) {
    for (const Reason& reason : c_reasons) {
        if (reason.nCode == nCode)
            return QString::fromUtf16(reason.szText);
    }
    if (!::strerrordesc_np(nCode))
        return {};
    std::array<char, 1024> text{};
    return QString::fromLocal8Bit(::strerror_r(nCode, text.data(), text.size()));
}
