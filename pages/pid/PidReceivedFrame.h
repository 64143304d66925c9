#ifndef PIDRECEIVEDFRAME_H
#define PIDRECEIVEDFRAME_H

// One frame from the board, decoded and ready to be applied to the page.
// Payload fields that the command does not carry stay 0. A payload cut short (its
// length field too small, or its tail not yet received) reads 0 as well.
struct PidReceivedFrame
{
    unsigned char command = 0; // PidFrame::RecvTargetValue .. RecvPeriod
    int channel = 0;           // channel index 0..4, the channel byte - 1
    int value = 0;             // target, actual sample or period
    float p = 0;               // RecvPidValues
    float i = 0;
    float d = 0;
};

#endif // PIDRECEIVEDFRAME_H
