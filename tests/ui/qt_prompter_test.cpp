// The message boxes the trader sees speak Chinese on every button, whatever Qt's own
// language.
#include "app/ui/qt_prompter.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>
#include <QStringList>
#include <QTimer>

#include "support/qt_app.h"

namespace {

// Runs `show` and, once its box is up, records the box's button texts and clicks `answer`.
template <class Show>
QStringList buttonsOf(Show show, const char* answer, bool* result = nullptr) {
    QStringList texts;
    QTimer::singleShot(0, [&] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        ASSERT_NE(box, nullptr);
        saveScreenshot(
            box, QString::fromUtf8(answer) == QString::fromUtf8("确定") ? "inform.png" : "ask.png");
        QAbstractButton* click = nullptr;
        for (QAbstractButton* b : box->buttons()) {
            texts << b->text();
            if (b->text() == QString::fromUtf8(answer)) click = b;
        }
        ASSERT_NE(click, nullptr);
        click->click();
    });
    const bool r = show();
    if (result) *result = r;
    texts.sort();
    return texts;
}

TEST(QtPrompter, ButtonsAreChinese) {
    testApp();
    QtPrompter prompter;
    const auto inform = [&] {
        prompter.inform("提示", "请先登录交易帐户！", PromptIcon::Information);
        return true;
    };
    EXPECT_EQ(buttonsOf(inform, "确定"), QStringList{QString::fromUtf8("确定")});

    bool yes = false;
    const auto ask = [&] { return prompter.ask("确认", "确认退出？", PromptIcon::Question); };
    QStringList yesNo = {QString::fromUtf8("否"), QString::fromUtf8("是")};
    yesNo.sort();
    EXPECT_EQ(buttonsOf(ask, "是", &yes), yesNo);
    EXPECT_TRUE(yes);
    buttonsOf(ask, "否", &yes);
    EXPECT_FALSE(yes);

    QMessageBox box(QMessageBox::Question, "t", "x", QMessageBox::Ok | QMessageBox::Cancel);
    QtPrompter::setChineseButtons(box);
    EXPECT_EQ(box.button(QMessageBox::Cancel)->text(), QString::fromUtf8("取消"));
}

}  // namespace
