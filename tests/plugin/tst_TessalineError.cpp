#include "plugin/TessalineError.h"
#include "support/IsolatedHome.h"

#include <QSignalSpy>
#include <QTest>

class tst_TessalineError : public QObject
{
    Q_OBJECT

private slots:
    void constructorsFillTheFieldsSilently();
    void everyChangeIsSignalledAlsoToEqualValues();
    void setErrorCopiesAllFields();
};

void tst_TessalineError::constructorsFillTheFieldsSilently()
{
    const TessalineError empty;
    QCOMPARE(empty.code(), 0);
    QVERIFY(empty.message().isEmpty() && empty.details().isEmpty());

    const TessalineError full(7, "message", "details");
    QCOMPARE(full.code(), 7);
    QCOMPARE(full.message(), QString("message"));
    QCOMPARE(full.details(), QString("details"));

    const TessalineError texts("message", "details");
    QCOMPARE(texts.code(), 0);
    QCOMPARE(texts.details(), QString("details"));
}

void tst_TessalineError::everyChangeIsSignalledAlsoToEqualValues()
{
    TessalineError error;
    QSignalSpy spy(&error, &TessalineError::objectChanged);

    error.setError(1, "a", "b");
    error.setError(1, "a", "b");
    error.clear();
    error.clear();

    QCOMPARE(spy.count(), 4);
    QCOMPARE(error.code(), 0);
    QVERIFY(error.message().isEmpty() && error.details().isEmpty());
}

void tst_TessalineError::setErrorCopiesAllFields()
{
    TessalineError error;
    QSignalSpy spy(&error, &TessalineError::objectChanged);

    error.setError(TessalineError(3, "m", "d"));

    QCOMPARE(error.code(), 3);
    QCOMPARE(error.message(), QString("m"));
    QCOMPARE(error.details(), QString("d"));
    QCOMPARE(spy.count(), 1);
}

TESSALINE_TEST_MAIN(tst_TessalineError)
#include "tst_TessalineError.moc"
