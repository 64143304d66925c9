#include "TelnetComPort.h"

namespace {
// the longest subnegotiation the protocol defines is a signature text; anything longer
// than this is garbage from the server
const int s_maxSub = 512;

bool weSupport(quint8 option)
{
    return option == TelnetComPort::OptBinary || option == TelnetComPort::OptSuppressGoAhead
           || option == TelnetComPort::OptComPort;
}

bool theySupport(quint8 option)
{
    // the server's echo would turn every byte sent into a received one
    return option == TelnetComPort::OptBinary || option == TelnetComPort::OptSuppressGoAhead;
}
} // namespace

QByteArray TelnetComPort::greeting()
{
    const char g[] = {char(IAC), char(WILL), char(OptComPort), char(IAC), char(WILL), char(OptBinary),
                      char(IAC), char(DO), char(OptBinary), char(IAC), char(WILL), char(OptSuppressGoAhead),
                      char(IAC), char(DO), char(OptSuppressGoAhead)};
    return QByteArray(g, sizeof(g));
}

QByteArray TelnetComPort::escape(const QByteArray &data)
{
    if (!data.contains(char(IAC)))
        return data;
    QByteArray out;
    out.reserve(data.size() + 16);
    for (char c : data) {
        out.append(c);
        if (quint8(c) == IAC)
            out.append(c);
    }
    return out;
}

QByteArray TelnetComPort::command(Command command, const QByteArray &value)
{
    QByteArray out;
    out.append(char(IAC)).append(char(SB)).append(char(OptComPort)).append(char(command));
    out.append(escape(value));
    out.append(char(IAC)).append(char(SE));
    return out;
}

QByteArray TelnetComPort::setBaudRate(quint32 baud)
{
    const char v[] = {char(baud >> 24), char(baud >> 16), char(baud >> 8), char(baud)};
    return command(SetBaudRate, QByteArray(v, 4));
}

QByteArray TelnetComPort::setByte(Command c, quint8 value)
{
    return command(c, QByteArray(1, char(value)));
}

QByteArray TelnetComPort::feed(const QByteArray &bytes)
{
    QByteArray data;
    data.reserve(bytes.size());
    for (char ch : bytes) {
        const quint8 c = quint8(ch);
        switch (m_state) {
        case Data:
            if (c == IAC)
                m_state = Iac;
            else
                data.append(ch);
            break;
        case Iac:
            if (c == IAC) {
                data.append(ch);
                m_state = Data;
            } else if (c >= WILL && c <= DONT) {
                m_verb = c;
                m_state = Verb;
            } else if (c == SB) {
                m_sub.clear();
                m_subOverflow = false;
                m_state = Sub;
            } else {
                // NOP, GA, data mark and the like carry nothing for a serial line
                m_state = Data;
            }
            break;
        case Verb:
            negotiate(m_verb, c);
            m_state = Data;
            break;
        case Sub:
            if (c == IAC)
                m_state = SubIac;
            else if (m_sub.size() < s_maxSub)
                m_sub.append(ch);
            else
                m_subOverflow = true;
            break;
        case SubIac:
            if (c == SE) {
                endSubnegotiation();
                m_state = Data;
            } else {
                // IAC IAC inside a subnegotiation is a 0xFF of the value; a stray IAC
                // before anything else is taken the same way rather than lose the rest
                if (m_sub.size() < s_maxSub)
                    m_sub.append(ch);
                else
                    m_subOverflow = true;
                m_state = Sub;
            }
            break;
        }
    }
    return data;
}

void TelnetComPort::negotiate(quint8 verb, quint8 option)
{
    auto answer = [this](quint8 v, quint8 o) {
        m_outgoing.append(char(IAC)).append(char(v)).append(char(o));
    };
    switch (verb) {
    case DO:
        if (option == OptComPort)
            m_comPortAccepted = true;
        if (weSupport(option)) {
            if (!m_weWill[option]) {
                m_weWill[option] = true;
                // greeting() already offered these; anything else is agreed here
                if (option != OptComPort && option != OptBinary && option != OptSuppressGoAhead)
                    answer(WILL, option);
            }
        } else {
            answer(WONT, option);
        }
        break;
    case DONT:
        if (option == OptComPort)
            m_comPortAccepted = false;
        if (m_weWill[option]) {
            m_weWill[option] = false;
            answer(WONT, option);
        }
        break;
    case WILL:
        if (theySupport(option)) {
            m_theyWill[option] = true;
        } else {
            answer(DONT, option);
        }
        break;
    case WONT:
        if (m_theyWill[option]) {
            m_theyWill[option] = false;
            answer(DONT, option);
        }
        break;
    }
}

void TelnetComPort::endSubnegotiation()
{
    if (m_subOverflow || m_sub.size() < 2 || quint8(m_sub.at(0)) != OptComPort)
        return;
    // server codes are the client's commands + 100; anything else (signature
    // requests and codes from later drafts) asks nothing of a client
    const quint8 code = quint8(m_sub.at(1));
    if (code < 100 + SetBaudRate || code > 100 + PurgeData)
        return;
    Reply r;
    r.command = quint8(code - 100);
    r.value = m_sub.mid(2);
    m_replies.append(r);
}

QByteArray TelnetComPort::takeOutgoing()
{
    QByteArray out;
    out.swap(m_outgoing);
    return out;
}

QList<TelnetComPort::Reply> TelnetComPort::takeReplies()
{
    QList<Reply> out;
    out.swap(m_replies);
    return out;
}
