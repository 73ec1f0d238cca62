#include "content/ui/EntryFields.h"

#include "content/Texts.h"
#include "foundation/Paths.h"
#include "platform/base/NativePath.h"
#include "platform/ui/DialogParts.h"

#include <QDir>
#include <QDropEvent>
#include <QMimeData>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace {

/// The first file of what is dragged; empty when it is something else.
QString DraggedFile(const QDropEvent& event) {
    return event.mimeData()->urls().value(0).toLocalFile();
}

} // namespace

QString CPathField::GetPath() const {
    const QString strText = DialogParts::TextOf(*this).trimmed();
    return strText.isEmpty() ? QString() : Platform::FromNative(QDir::cleanPath(strText));
}

void CPathField::SetPath(const QString& strPath) {
    setText(Platform::ToShown(strPath));
}

void CPathField::dragEnterEvent(QDragEnterEvent* pEvent) {
    dragMoveEvent(pEvent);
}

void CPathField::dragMoveEvent(QDragMoveEvent* pEvent) {
    if (DraggedFile(*pEvent).isEmpty())
        QLineEdit::dragMoveEvent(pEvent);
    else
        pEvent->acceptProposedAction();
}

void CPathField::dropEvent(QDropEvent* pEvent) {
    const QString strFile = DraggedFile(*pEvent);
    if (strFile.isEmpty()) {
        QLineEdit::dropEvent(pEvent);
        return;
    }
    setText(strFile);
    pEvent->acceptProposedAction();
}

CUrlField::CUrlField(QWidget* pParent) : QLineEdit(ContentText::c_strUrlHead, pParent) {
    connect(this, &QLineEdit::textEdited, this, &CUrlField::TakeWhole);
}

void CUrlField::TakeWhole(const QString& strText) {
    if (!strText.startsWith(ContentText::c_strUrlHead))
        return;
    const QString strRest = strText.mid(ContentText::c_strUrlHead.size()).trimmed();
    if (strRest.contains(u"://"_s) && Torvane::File::IsWholeAddress(strRest))
        setText(strRest);
}

void CUrlField::focusInEvent(QFocusEvent* pEvent) {
    QLineEdit::focusInEvent(pEvent);
    // What stands there already is to be gone on with.
    if (text() == ContentText::c_strUrlHead)
        end(false);
}
