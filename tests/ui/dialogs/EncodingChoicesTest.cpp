// The save panel's encoding pop-up is laid out as the encoding menu: the common entries, then each
// region under a title that cannot be chosen, every encoding once, the document's chosen.
#include "ui/dialogs/EncodingChoices.h"

#include "core/document/EncodingMenu.h"
#include "support/QStringPrinter.h"

#include <QComboBox>
#include <QStandardItemModel>

#include <gtest/gtest.h>

using namespace mirtex;

TEST(EncodingChoicesTest, ThePopupIsGroupedAsTheMenu)
{
    const QList<EncodingGroup> groups = encodingMenuGroups();
    ASSERT_GE(groups.size(), 2);
    const TextEncoding outsideTheMenus{CharacterSet::utf32LE, true};
    for (const TextEncoding &selected :
         {TextEncoding::utf8(), groups[1].encodings.last(), outsideTheMenus}) {
        SCOPED_TRACE(selected.id().toStdString());
        QComboBox popup;
        EncodingChoices::fillEncodingPopup(&popup, selected);
        auto *model = qobject_cast<QStandardItemModel *>(popup.model());
        ASSERT_TRUE(model);

        QStringList titles;
        QStringList ids;
        int group = -1; // before the first title: the common entries
        for (int row = 0; row < popup.count(); ++row) {
            const QStandardItem *item = model->item(row);
            const QString id = popup.itemData(row).toString();
            if (id.isEmpty()) {
                if (popup.itemText(row).isEmpty())
                    continue; // a separator
                EXPECT_FALSE(item->flags() & Qt::ItemIsSelectable)
                    << popup.itemText(row).toStdString();
                titles.append(popup.itemText(row));
                ++group;
                continue;
            }
            EXPECT_FALSE(ids.contains(id)) << "listed twice: " << id.toStdString();
            ids.append(id);
            const auto encoding = TextEncoding::fromId(id);
            ASSERT_TRUE(encoding);
            if (group >= 0) {
                EXPECT_TRUE(groups[group].encodings.contains(*encoding))
                    << id.toStdString() << " under " << titles.last().toStdString();
            } else if (*encoding != outsideTheMenus) {
                EXPECT_TRUE(commonEncodings().contains(*encoding)) << id.toStdString();
            }
        }
        QStringList expectedTitles;
        for (const EncodingGroup &g : groups)
            expectedTitles.append(g.title);
        EXPECT_EQ(titles, expectedTitles);
        EXPECT_EQ(popup.currentData().toString(), selected.id());
    }
}
