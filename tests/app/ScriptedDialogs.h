#pragma once

#include <gtest/gtest.h>

#include <deque>
#include <functional>
#include <utility>

#include "app/dialogs/Dialogs.h"

namespace lumirra {

/// Answers from a script and remembers what was asked. A question without an answer fails the test.
class ScriptedDialogs : public Dialogs {
  public:
    std::deque<Answer> answers;
    std::deque<std::optional<QStringList>> files;
    std::deque<std::optional<QString>> saves;
    std::deque<std::optional<double>> numbers;

    /// Called while an alert stands, once.
    std::function<void()> whileAsked;

    QStringList messages;  ///< every alert, in order
    QList<QStringList> buttons;
    QList<OpenRequest> opened;
    QList<SaveRequest> saved;
    QList<QUrl> addresses;
    QStringList numbersAsked;  ///< titles

    Answer ShowAlert(const QString& message, const QStringList& shown) override {
        messages.append(message);
        buttons.append(shown);
        if (const auto meanwhile = std::exchange(whileAsked, nullptr)) {
            meanwhile();
        }
        if (shown.size() == 1) {
            return FirstButton;
        }
        return Next(answers, FirstButton);
    }
    std::optional<QStringList> OpenFiles(const OpenRequest& request) override {
        opened.append(request);
        return Next(files, std::optional<QStringList>());
    }
    std::optional<QString> SaveFile(const SaveRequest& request) override {
        saved.append(request);
        return Next(saves, std::optional<QString>());
    }
    std::optional<double> AskNumber(const NumberRequest& request) override {
        numbersAsked.append(request.title);
        return Next(numbers, std::optional<double>());
    }
    void OpenAddress(const QUrl& address) override { addresses.append(address); }

    /// The alert shown since the last call; fails unless there was exactly one.
    QString OnlyMessage() {
        EXPECT_EQ(messages.size(), 1);
        QString message = messages.isEmpty() ? QString() : messages.last();
        messages.clear();
        return message;
    }

  private:
    template <typename Value>
    static Value Next(std::deque<Value>& script, const Value& otherwise) {
        if (script.empty()) {
            ADD_FAILURE() << "asked without an answer in the script";
            script.push_back(otherwise);
        }
        Value value(std::move(script.front()));
        script.pop_front();
        return value;
    }
};

}  // namespace lumirra
