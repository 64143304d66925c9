#include "QtRecvSaveFormat.h"
#include "MyApp.h"
#include "QtFileDialog.h"
#include "RecvViewText.h"

#include <QSaveFile>

QByteArray QtRecvSaveFormat::saveBytes(const QString &fileName, const QString &viewText)
{
    return RecvViewText::saveBytes(fileName, viewText, MyApp::getTextCodec());
}

QtRecvSaveFormat::Notice QtRecvSaveFormat::save(QWidget *dialogParent, const QString &text, const QString &fileName)
{
    if (text.isEmpty())
        return Notice();
    QString name = fileName;
    if (name.isEmpty()) {
        QtFileDialog dialog(dialogParent);
        dialog.setAcceptMode(QFileDialog::AcceptSave);
        dialog.setNameFilter("*.txt;;*.bin");
        if (dialog.exec() != QDialog::Accepted)
            return Notice();
        name = dialog.exitfile();
        if (name.isEmpty())
            return Notice();
    }
    // written beside the file and renamed over it: a full disk or a folder gone leaves
    // an older file of the same name whole, and says the save failed
    QSaveFile file(name);
    if (!file.open(QIODevice::WriteOnly))
        return Notice("文件保存失败!", 255);
    file.write(saveBytes(name, text));
    // Qt's commit renames even when the buffered last write failed: flush first
    if (!file.flush())
        file.cancelWriting();
    if (!file.commit())
        return Notice("文件保存失败!", 255);
    return Notice("文件保存完成!", 0);
}
