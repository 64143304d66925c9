#include "QtRecvSaveFormat.h"
#include "MyApp.h"
#include "NumberTool.h"

QByteArray QtRecvSaveFormat::saveBytes(const QString &fileName, const QString &viewText)
{
    if (fileName.endsWith("txt"))
        return MyApp::strToUnicode(viewText);
    // a view taken in ASCII or with log tags goes through the same lenient
    // conversion; what is not hex text yields what the converter makes of it
    return NumberTool::hexStrToByteArray(viewText);
}
