#ifndef PIDMOTOR_H
#define PIDMOTOR_H

#include <random>

// One channel of the PID board: a DC motor's speed under a PID loop.
//
// The plant is first order in speed w: J dw/dt = u_eff - b w - friction, where the
// drive u_eff follows the controller's output through a short current-loop lag and
// dry friction holds a slow shaft until the drive overcomes it. The controller runs
// once a period on the last measurement and holds its output until the next one, so
// a gain that is too high makes the speed swing around the target.
class PidMotor
{
public:
    void setGains(float p, float i, float d) { m_p = p, m_i = i, m_d = d; }
    void setTarget(int target) { m_target = target; }
    void setNoise(double amplitude) { m_noise = amplitude; }
    // back to rest, controller memory cleared
    void reset();
    // one control period of dt seconds; returns the measured speed at its end
    int step(double dt);
    int measured() const { return m_measured; }

    static constexpr double Inertia = 0.02;
    static constexpr double Damping = 0.2;
    static constexpr double DryFriction = 5.0;
    static constexpr double DriveLag = 0.02;  // seconds
    static constexpr double DriveLimit = 2000.0;

private:
    float m_p = 0, m_i = 0, m_d = 0;
    int m_target = 0;
    double m_noise = 0;
    double m_speed = 0;
    double m_drive = 0;  // u_eff
    double m_integral = 0;
    double m_lastError = 0;
    bool m_first = true;
    int m_measured = 0;
    std::mt19937 m_rng{7};
};

#endif // PIDMOTOR_H
