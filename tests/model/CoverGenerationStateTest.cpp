#include "model/CoverGenerationState.h"

#include "support/SamplePictures.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

namespace
{

/// What a screen would show; it compiles only if these four cases are all that there are.
struct Shown {
    QString operator()(const generationState::Idle &) const { return u"nothing"_s; }
    QString operator()(const generationState::Generating &) const { return u"progress"_s; }
    QString operator()(const generationState::Success &success) const
    {
        return u"a picture %1 wide"_s.arg(success.image.width());
    }
    QString operator()(const generationState::Failure &failure) const { return failure.message; }
};

QString shown(const CoverGenerationState &state)
{
    return std::visit(Shown{}, state);
}

} // namespace

class CoverGenerationStateTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aFreshStateIsIdle();
    void eachOfTheFourCasesIsToldApart();
    void aSuccessCarriesItsImage();
    void aFailureCarriesItsMessageAsItIs();
};

void CoverGenerationStateTest::aFreshStateIsIdle()
{
    QVERIFY(std::holds_alternative<generationState::Idle>(CoverGenerationState{}));
}

void CoverGenerationStateTest::eachOfTheFourCasesIsToldApart()
{
    QCOMPARE(shown(generationState::Idle{}), u"nothing"_s);
    QCOMPARE(shown(generationState::Generating{}), u"progress"_s);
    QCOMPARE(shown(generationState::Success{samplePictures::picture({7, 5})}), u"a picture 7 wide"_s);
    QCOMPARE(shown(generationState::Failure{u"出错了"_s}), u"出错了"_s);
}

void CoverGenerationStateTest::aSuccessCarriesItsImage()
{
    const QImage image = samplePictures::picture({7, 5});
    const CoverGenerationState state = generationState::Success{image};
    const auto *success = std::get_if<generationState::Success>(&state);
    QVERIFY(success != nullptr);
    QCOMPARE(success->image, image);
    QVERIFY(std::get_if<generationState::Failure>(&state) == nullptr);
}

void CoverGenerationStateTest::aFailureCarriesItsMessageAsItIs()
{
    const QString message = u" <b>HTTP</b> & \n错误 "_s;
    CoverGenerationState state = generationState::Failure{message};
    QCOMPARE(shown(state), message);
    state = generationState::Failure{};
    QCOMPARE(shown(state), QString{});
}

QTEST_GUILESS_MAIN(CoverGenerationStateTest)
#include "CoverGenerationStateTest.moc"
