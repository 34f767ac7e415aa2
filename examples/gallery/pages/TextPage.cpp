#include "GalleryPage.h"

#include <TarnCommon/KQFilesAndEncodings.h>
#include <TarnCommon/KQStringExtensions.h>
#include <TarnCommon/KQURLRequest.h>

#include <QtWidgets/QFormLayout>
#include <QtWidgets/QGridLayout>
#include <QtWidgets/QGroupBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPlainTextEdit>
#include <QtWidgets/QVBoxLayout>

namespace {

// "name = value" lines, in order; a line without "=" is a name with an empty value.
QList<QPair<QString, QString>> parseLines(const QString &text)
{
    QList<QPair<QString, QString>> pairs;
    for (const QString &line : text.split(u'\n', Qt::SkipEmptyParts)) {
        const qsizetype equals = line.indexOf(u'=');
        if (equals < 0)
            pairs.append({line.trimmed(), QString()});
        else
            pairs.append({line.left(equals).trimmed(), line.mid(equals + 1).trimmed()});
    }
    return pairs;
}

QPlainTextEdit *editor(const QString &text, QWidget *parent, bool readOnly = false)
{
    auto *edit = new QPlainTextEdit(text, parent);
    edit->setReadOnly(readOnly);
    edit->setTabChangesFocus(true);
    return edit;
}

// What a request would carry, as text: method, headers, a blank line, the body.
QString describeRequest(const KQURLRequest &request)
{
    QString text = QString::fromLatin1(request.HTTPMethod()) + u'\n';
    for (const auto &header : request.allHTTPHeaderFields())
        text += QString::fromLatin1(header.first + ": " + header.second) + u'\n';
    return text + u'\n' + QString::fromUtf8(request.HTTPBody()).replace(QStringLiteral("\r\n"), QStringLiteral("\u21B5\n"));
}

QWidget *templateBox(QWidget *parent)
{
    auto *box = new QGroupBox(QObject::tr("Template"), parent);
    auto *layout = new QGridLayout(box);
    auto *format = editor(QStringLiteral("Hello ${who}! You have ${count} new ${ what}.\n${missing}"), box);
    auto *arguments = editor(QStringLiteral("who = World\ncount = 3\nwhat = messages"), box);
    auto *result = editor(QString(), box, true);
    layout->addWidget(new QLabel(QObject::tr("Format"), box), 0, 0);
    layout->addWidget(new QLabel(QObject::tr("Arguments (name = value)"), box), 0, 1);
    layout->addWidget(new QLabel(QObject::tr("Filled"), box), 0, 2);
    layout->addWidget(format, 1, 0);
    layout->addWidget(arguments, 1, 1);
    layout->addWidget(result, 1, 2);
    auto update = [=] {
        QVariantMap args;
        for (const auto &pair : parseLines(arguments->toPlainText()))
            args.insert(pair.first, pair.second);
        result->setPlainText(kq_stringWithFormat(format->toPlainText(), args));
    };
    QObject::connect(format, &QPlainTextEdit::textChanged, box, update);
    QObject::connect(arguments, &QPlainTextEdit::textChanged, box, update);
    update();
    return box;
}

QWidget *base64Box(QWidget *parent)
{
    auto *box = new QGroupBox(QObject::tr("Base 64"), parent);
    auto *layout = new QFormLayout(box);
    auto *plain = new QLineEdit(QString::fromUtf8("Man \xE2\x80\x94 caf\xC3\xA9"), box);
    auto *encoded = new QLineEdit(box);
    encoded->setReadOnly(true);
    auto *base64 = new QLineEdit(QStringLiteral("Zm9vYmFy"), box);
    auto *decoded = new QLineEdit(box);
    decoded->setReadOnly(true);
    layout->addRow(QObject::tr("Text (UTF-8)"), plain);
    layout->addRow(QObject::tr("Encoded"), encoded);
    layout->addRow(QObject::tr("Base 64"), base64);
    layout->addRow(QObject::tr("Decoded"), decoded);
    auto encode = [=] { encoded->setText(kq_base64Encode(plain->text().toUtf8())); };
    auto decode = [=] {
        const QByteArray bytes = kq_base64Decode(base64->text());
        decoded->setText(bytes.isNull() ? QObject::tr("(not strict base 64)") : QString::fromUtf8(bytes));
    };
    QObject::connect(plain, &QLineEdit::textChanged, box, encode);
    QObject::connect(base64, &QLineEdit::textChanged, box, decode);
    encode();
    decode();
    return box;
}

QWidget *postBox(QWidget *parent)
{
    auto *box = new QGroupBox(QObject::tr("POST bodies"), parent);
    auto *layout = new QGridLayout(box);
    auto *parameters = editor(QString::fromUtf8("name = Ada Lovelace\nnote = caf\xC3\xA9 & more\nsum = 1+1=2"), box);
    auto *form = editor(QString(), box, true);
    auto *contents = editor(QStringLiteral("<note>hello</note>"), box);
    auto *filename = new QLineEdit(QStringLiteral("note.xml"), box);
    auto *key = new QLineEdit(QStringLiteral("upload"), box);
    auto *multipart = editor(QString(), box, true);
    auto *fileFields = new QFormLayout;
    fileFields->addRow(QObject::tr("File name"), filename);
    fileFields->addRow(QObject::tr("Field"), key);
    layout->addWidget(new QLabel(QObject::tr("Form parameters (name = value)"), box), 0, 0);
    layout->addWidget(new QLabel(QObject::tr("Form request"), box), 0, 1);
    layout->addWidget(parameters, 1, 0);
    layout->addWidget(form, 1, 1);
    layout->addWidget(new QLabel(QObject::tr("File contents"), box), 2, 0);
    layout->addWidget(new QLabel(QObject::tr("Multipart request (\u21B5 marks CR LF)"), box), 2, 1);
    auto *fileColumn = new QVBoxLayout;
    fileColumn->addWidget(contents);
    fileColumn->addLayout(fileFields);
    layout->addLayout(fileColumn, 3, 0);
    layout->addWidget(multipart, 3, 1);
    layout->setColumnStretch(1, 1);
    auto updateForm = [=] {
        KQURLRequest request(QUrl(QStringLiteral("http://localhost/form")));
        kq_setHTTPPostParameters(request, parseLines(parameters->toPlainText()));
        form->setPlainText(describeRequest(request));
    };
    auto updateFile = [=] {
        KQURLRequest request(QUrl(QStringLiteral("http://localhost/upload")));
        kq_setHTTPPostFile(request, contents->toPlainText(), filename->text(), key->text());
        multipart->setPlainText(describeRequest(request));
    };
    QObject::connect(parameters, &QPlainTextEdit::textChanged, box, updateForm);
    QObject::connect(contents, &QPlainTextEdit::textChanged, box, updateFile);
    QObject::connect(filename, &QLineEdit::textChanged, box, updateFile);
    QObject::connect(key, &QLineEdit::textChanged, box, updateFile);
    updateForm();
    updateFile();
    return box;
}

QWidget *createTextPage()
{
    auto *page = new QWidget;
    auto *layout = new QVBoxLayout(page);
    layout->addWidget(templateBox(page), 2);
    layout->addWidget(base64Box(page));
    layout->addWidget(postBox(page), 3);
    return page;
}

const bool registered =
    GalleryPages::add({70, QStringLiteral("text"), QObject::tr("Text and encodings"), &createTextPage});

} // namespace
