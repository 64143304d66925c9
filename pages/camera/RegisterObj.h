#ifndef REGISTEROBJ_H
#define REGISTEROBJ_H

#include <QString>

// One camera register row of the register strip and its table: an id numbered from
// 1, the address, the value and the user's note. Owned by the map that holds it.
class RegisterObj
{
public:
    explicit RegisterObj(int id);

    int id() const { return m_id; }
    void setId(int id) { m_id = id; }
    unsigned int addr() const { return m_addr; }
    void setAddr(const unsigned int &addr) { m_addr = addr; }
    int value() const { return m_value; }
    void setValue(const int &value) { m_value = value; }
    QString description() const { return m_description; }
    void setDescription(const QString &description) { m_description = description; }

    // at least two digits, upper case: 0x5 reads "05"
    QString strAddr(int base) const;
    // like strAddr, but the value is widened as a signed number first, so in base 16 a
    // value with bit 31 set prints as sixteen digits beginning "FFFFFFFF"
    QString strValue(int base) const;

private:
    int m_id;
    unsigned int m_addr;
    int m_value;
    QString m_description;
};

#endif // REGISTEROBJ_H
