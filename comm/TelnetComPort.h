#ifndef TELNETCOMPORT_H
#define TELNETCOMPORT_H

#include <QByteArray>
#include <QList>

// The client side of a telnet session carrying a serial port (the COM-PORT-OPTION of
// RFC 2217), without any socket: bytes from the server go into feed(), which returns
// the serial data among them and queues what the protocol must answer (takeOutgoing)
// and the server's acknowledgements of port settings (takeReplies). Bytes for the
// serial line go through escape(); port settings through the builders below.
//
// Chunks may split anywhere, inside an IAC pair or a subnegotiation: the state is
// kept between calls. A subnegotiation longer than any the protocol knows is
// dropped rather than kept growing, so a misbehaving server cannot eat memory.
class TelnetComPort
{
public:
    enum : quint8 {
        IAC = 255, DONT = 254, DO = 253, WONT = 252, WILL = 251, SB = 250, SE = 240,
        OptBinary = 0, OptEcho = 1, OptSuppressGoAhead = 3, OptComPort = 44
    };
    // client-to-server command codes; the server answers with code + 100
    enum Command : quint8 {
        SetBaudRate = 1, SetDataSize = 2, SetParity = 3, SetStopSize = 4, SetControl = 5,
        NotifyLineState = 6, NotifyModemState = 7, FlowSuspend = 8, FlowResume = 9,
        SetLineStateMask = 10, SetModemStateMask = 11, PurgeData = 12
    };
    // the values of SetControl used here
    enum Control : quint8 {
        FlowNone = 1, FlowXonXoff = 2, FlowHardware = 3,
        DtrOn = 8, DtrOff = 9, RtsOn = 11, RtsOff = 12
    };
    // values of SetParity (the page's 0 none, 1 odd, 2 even map to 1, 2, 3)
    enum Parity : quint8 { ParityNone = 1, ParityOdd = 2, ParityEven = 3, ParityMark = 4, ParitySpace = 5 };
    // values of PurgeData
    enum Purge : quint8 { PurgeReceive = 1, PurgeTransmit = 2, PurgeBoth = 3 };

    struct Reply {
        quint8 command = 0; // the client command it answers (server code - 100)
        QByteArray value;
        bool operator==(const Reply &o) const { return command == o.command && value == o.value; }
    };

    // what opens the session: the client offers the COM port option and binary mode
    static QByteArray greeting();
    // serial data with every 0xFF doubled
    static QByteArray escape(const QByteArray &data);
    // IAC SB COM-PORT-OPTION command value IAC SE, the value escaped
    static QByteArray command(Command command, const QByteArray &value);
    static QByteArray setBaudRate(quint32 baud);
    static QByteArray setByte(Command command, quint8 value);

    // serial data in `bytes`; protocol traffic is consumed
    QByteArray feed(const QByteArray &bytes);
    QByteArray takeOutgoing();
    QList<Reply> takeReplies();
    // whether the server agreed to act on port settings (DO COM-PORT-OPTION seen)
    bool comPortAccepted() const { return m_comPortAccepted; }

private:
    void negotiate(quint8 verb, quint8 option);
    void endSubnegotiation();

    enum State { Data, Iac, Verb, Sub, SubIac };
    State m_state = Data;
    quint8 m_verb = 0;
    QByteArray m_sub;
    bool m_subOverflow = false;
    QByteArray m_outgoing;
    QList<Reply> m_replies;
    // options whose state was answered, so a repeated request is not answered again
    // (the loop RFC 854 warns about)
    bool m_weWill[256] = {};
    bool m_theyWill[256] = {};
    bool m_comPortAccepted = false;
};

#endif // TELNETCOMPORT_H
