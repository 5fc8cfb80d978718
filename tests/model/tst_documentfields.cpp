// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/MemberCount.h"

#include "model/DocumentFields.h"

#include <QSet>
#include <QTest>

#include <cstddef>

using namespace corkwheel;
using namespace corkwheel::test;

namespace {

// The members and keys a table names, each counted once.
struct NamedFields {
    qsizetype members = 0;
    qsizetype keys = 0;
};

template <typename Object> NamedFields namedFields() {
    Object object;
    QSet<const void*> members;
    QSet<QByteArray> keys;
    forEachDocumentField(object, [&](std::string_view key, const auto& member) {
        members.insert(&member);
        keys.insert(QByteArray(key.data(), static_cast<qsizetype>(key.size())));
    });
    return {members.size(), keys.size()};
}

template <typename Object> void verifyEveryMemberIsSaved() {
    constexpr auto expected = static_cast<qsizetype>(memberCount<Object>());
    const NamedFields named = namedFields<Object>();
    QCOMPARE(named.members, expected);
    QCOMPARE(named.keys, expected);
}

} // namespace

// A member that no key names would silently not be saved; one named twice would make
// every document unreadable.
class DocumentFieldsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everyPanelMemberIsSavedUnderAKeyOfItsOwn() { verifyEveryMemberIsSaved<Panel>(); }
    void everyFrameMemberIsSavedUnderAKeyOfItsOwn() { verifyEveryMemberIsSaved<PanelFrame>(); }
    void everyStyleMemberIsSavedUnderAKeyOfItsOwn() { verifyEveryMemberIsSaved<PanelStyle>(); }
    void everyColourMemberIsSavedUnderAKeyOfItsOwn() { verifyEveryMemberIsSaved<CodableColor>(); }
};

QTEST_GUILESS_MAIN(DocumentFieldsTest)
#include "tst_documentfields.moc"
