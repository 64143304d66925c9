#include "PidMotor.h"

#include <algorithm>
#include <cmath>

void PidMotor::reset()
{
    m_speed = m_drive = m_integral = m_lastError = 0;
    m_first = true;
    m_measured = 0;
}

int PidMotor::step(double dt)
{
    dt = std::max(dt, 1e-4);
    const double error = m_target - m_measured;
    const double derivative = m_first ? 0 : (error - m_lastError) / dt;
    m_first = false;
    m_lastError = error;
    double u = m_p * error + m_i * (m_integral + error * dt) + m_d * derivative;
    // the integral stops growing while the drive is at its limit (no wind-up)
    if (std::abs(u) < DriveLimit)
        m_integral += error * dt;
    u = std::clamp(u, -DriveLimit, DriveLimit);

    // integrate the plant in steps of at most a millisecond
    const int n = std::max(1, int(std::ceil(dt / 0.001)));
    const double h = dt / n;
    for (int k = 0; k < n; ++k) {
        m_drive += (u - m_drive) * std::min(1.0, h / DriveLag);
        double force = m_drive - Damping * m_speed;
        if (std::abs(m_speed) < 1e-6 && std::abs(force) <= DryFriction) {
            m_speed = 0;
            continue;
        }
        const double dir = m_speed != 0 ? (m_speed > 0 ? 1 : -1) : (force > 0 ? 1 : -1);
        force -= DryFriction * dir;
        const double next = m_speed + force / Inertia * h;
        // friction stops the shaft, it does not turn it round
        m_speed = (m_speed != 0 && (next > 0) != (m_speed > 0)) ? 0 : next;
    }
    double measured = m_speed;
    if (m_noise > 0)
        measured += std::normal_distribution<double>(0, m_noise)(m_rng);
    m_measured = int(std::lround(measured));
    return m_measured;
}
