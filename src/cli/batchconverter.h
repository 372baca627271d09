#ifndef BREVIO_BATCHCONVERTER_H
#define BREVIO_BATCHCONVERTER_H

#include <QDateTime>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVector>

#include <cstdio>

// Converts a list of configuration files with one convert job each on the
// global thread pool, the way the window does, and reports every file's
// outcome in the order the files were given.
class BatchConverter : public QObject {
    Q_OBJECT

public:
    BatchConverter(const QStringList& files, std::FILE* out, std::FILE* err,
                   QObject* parent = nullptr);

    // Starts every job; emits done() once all have ended.
    void start();
    bool allConverted() const;

signals:
    void done();

private:
    struct Entry {
        QString given;
        QString jsonPath;
        QString reportPath;
        bool reportExisted = false;
        QDateTime reportModifiedBefore;
        bool ended = false;
        bool converted = false;
        QString reason;
        QString warning;
        QString fontWarning;
    };

    void jobEnded(int index, bool finished);
    void flushReady();
    void showProgress();

    QVector<Entry> entries;
    int nextToPrint = 0;
    int endedCount = 0;
    std::FILE* out;
    std::FILE* err;
    bool progressOnTerminal;
};

#endif
