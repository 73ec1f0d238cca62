#include "content/ui/PlaceList.h"

#include "content/Texts.h"

#include <QAbstractTableModel>
#include <QHeaderView>
#include <QMouseEvent>
#include <QPainter>
#include <QScopedValueRollback>

namespace {
constexpr int c_nNameWidthInLetters = 24;
constexpr int c_nMargin = 6;
} // namespace

class CPlaceList::CModel : public QAbstractTableModel {
public:
    using QAbstractTableModel::QAbstractTableModel;

    void Set(const QList<PagePlaces::Place>& places) {
        beginResetModel();
        m_places = places;
        endResetModel();
    }
    const QList<PagePlaces::Place>& Places() const { return m_places; }

    int rowCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : static_cast<int>(m_places.size());
    }
    int columnCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : 2; }
    QVariant data(const QModelIndex& index, int nRole) const override {
        const PagePlaces::Place& place = m_places[index.row()];
        // The whole page has no name of its own.
        const QString& strName = place.strName.isEmpty() ? place.strText : place.strName;
        const QString strText = place.strName.isEmpty() ? QString() : place.strText;
        if (nRole == Qt::DisplayRole || nRole == Qt::ToolTipRole)
            return index.column() == 0 ? strName : strText;
        if (nRole == Qt::AccessibleTextRole)
            return strText.isEmpty() || index.column() != 0 ? strName : QString(strName + u' ' + strText);
        return {};
    }
    QVariant headerData(int nSection, Qt::Orientation, int nRole) const override {
        if (nRole != Qt::DisplayRole)
            return {};
        return nSection == 0 ? ContentText::c_strInSitePlaceName : ContentText::c_strInSitePlaceText;
    }

private:
    QList<PagePlaces::Place> m_places;
};

CPlaceList::CPlaceList(QWidget* pParent) : QTreeView(pParent), m_pModel(new CModel(this)) {
    setModel(m_pModel);
    setRootIsDecorated(false);
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true);
    setEditTriggers(NoEditTriggers);
    // Its keys are the arrows and the letters; Tab goes on to the next control.
    setTabKeyNavigation(false);
    header()->setSectionsMovable(false);
    header()->resizeSection(0, c_nNameWidthInLetters * fontMetrics().averageCharWidth());
    connect(selectionModel(), &QItemSelectionModel::currentChanged, this, &CPlaceList::Tell);
}

void CPlaceList::SetPlaces(const QList<PagePlaces::Place>& places, const QString& strWhyNone) {
    const QScopedValueRollback showing(m_bShowing, true);
    m_strWhyNone = strWhyNone;
    m_pModel->Set(places);
    setAccessibleDescription(places.isEmpty() ? strWhyNone : QString());
    viewport()->update();
}

void CPlaceList::ShowPlace(const QString& strPlace) {
    const QScopedValueRollback showing(m_bShowing, true);
    const qsizetype nRow = PagePlaces::IndexOf(m_pModel->Places(), strPlace);
    const QModelIndex index = nRow < 0 ? QModelIndex() : m_pModel->index(static_cast<int>(nRow), 0);
    if (index != currentIndex())
        setCurrentIndex(index);
}

void CPlaceList::Tell(const QModelIndex& index) {
    if (!m_bShowing && index.isValid())
        Q_EMIT Chosen(m_pModel->Places()[index.row()].strName);
}

/// A click on the present place goes there once more, where the page has been scrolled away from it.
void CPlaceList::mouseReleaseEvent(QMouseEvent* pEvent) {
    const QModelIndex before = currentIndex();
    QTreeView::mouseReleaseEvent(pEvent);
    if (pEvent->button() == Qt::LeftButton && before == currentIndex())
        Tell(indexAt(pEvent->position().toPoint()));
}

void CPlaceList::paintEvent(QPaintEvent* pEvent) {
    QTreeView::paintEvent(pEvent);
    if (m_pModel->rowCount() > 0)
        return;
    QPainter painter(viewport());
    painter.setPen(palette().color(QPalette::PlaceholderText));
    painter.drawText(viewport()->rect().adjusted(c_nMargin, c_nMargin, -c_nMargin, -c_nMargin),
                     Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap, m_strWhyNone);
}
