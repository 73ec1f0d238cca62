#pragma once

#include "content/PagePlaces.h"

#include <QTreeView>

/// The places inside a page, one a line: its name and the text that stands there. The line of the present
/// place is the selected one.
class CPlaceList : public QTreeView {
    Q_OBJECT
public:
    explicit CPlaceList(QWidget* pParent);

    /// Without places the list says why.
    void SetPlaces(const QList<PagePlaces::Place>& places, const QString& strWhyNone);
    /// Selects the line of a place, if it has one, without a signal.
    void ShowPlace(const QString& strPlace);

Q_SIGNALS:
    /// The person chose a line, by a click or by the keys; the name is empty for the whole page.
    void Chosen(const QString& strName);

protected:
    void paintEvent(QPaintEvent* pEvent) override;
    void mouseReleaseEvent(QMouseEvent* pEvent) override;

private:
    class CModel;
    void Tell(const QModelIndex& index);

    CModel* m_pModel;
    QString m_strWhyNone;
    bool m_bShowing = false;
};
