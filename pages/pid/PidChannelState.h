#ifndef PIDCHANNELSTATE_H
#define PIDCHANNELSTATE_H

// State of one PID channel as last sent or reported.
struct PidChannelState
{
    float p;
    float i;
    float d;
    int target;
    int period;
};

#endif // PIDCHANNELSTATE_H
