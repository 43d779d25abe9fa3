#pragma once
/// @file
/// The length unit in which the user interface shows and accepts lengths.
#include <cstddef>
#include <set>
#include <string>

#include "KelBaseExport.h"

class IUserUnitDependent;

/// The length unit in which the user interface shows and accepts lengths (millimetres or
/// inches): conversions between it, millimetres and STL units, printing with the unit's
/// abbreviation, and dependents told when the unit changes.
class KELBASE_API MUserUnit {
public:
    /// The units. A fixed underlying type, so that any integer stored by SetUnit is a valid
    /// value.
    enum UNIT_TYPE : int {
        UNIT_MM = 0,  ///< Millimetres.
        UNIT_INCH = 1 ///< Inches (25.4 mm).
    };

    /// A unit object showing `unit`; the process-wide one is GetInstance().
    explicit MUserUnit(UNIT_TYPE unit);
    /// Listeners are not told; they are not owned.
    ~MUserUnit();
    MUserUnit(const MUserUnit&) = delete;
    MUserUnit& operator=(const MUserUnit&) = delete;

    /// The process-wide unit, created at load with UNIT_MM before any dependent can register.
    static MUserUnit& GetInstance();

    /// The unit as last stored by SetUnit.
    UNIT_TYPE GetUnit() const { return m_unit; }
    /// The unit's name and abbreviation (string ids 673/675 and 672/674) from the
    /// application's resource-string hook; empty while no hook is installed.
    ///@{
    const wchar_t* GetName() const { return m_name.c_str(); }
    const wchar_t* GetAbbreviation() const { return m_abbreviation.c_str(); }
    ///@}

    /// Stores `unit`. For UNIT_MM or UNIT_INCH it reloads the texts, format and factor (the
    /// process-wide instance also sets the internal units' conversion factor) and tells every
    /// listener when the unit changed. Any other value is stored and nothing else changes: the
    /// texts, format and factor stay those of the previous unit and nobody is told.
    void SetUnit(UNIT_TYPE unit);

    /// Adds or removes a listener told when the unit changes; not owned. A listener is held
    /// once; removing an unknown one does nothing.
    ///@{
    void AddUserUnitListener(IUserUnitDependent* listener);
    void RemoveUserUnitListener(IUserUnitDependent* listener);
    ///@}

    /// A length, area or volume in the user unit converted to millimetres, or back.
    ///@{
    double ConvertFromUIToMm(double value) const;
    double ConvertFromMmToUI(double value) const;
    double ConvertFromUIToMmSquare(double value) const;
    double ConvertFromMmSquareToUI(double value) const;
    double ConvertFromUIToMmCubed(double value) const;
    double ConvertFromMmCubedToUI(double value) const;
    ///@}
    /// A length in the user unit in STL units at the current internal resolution, rounded to
    /// the nearest unit and clamped to 32 bits.
    long ConvertFromUIToStlUnits(double value) const;
    /// A length, area or volume in STL units converted to the user unit, or back, at the
    /// current internal resolution; unrounded.
    ///@{
    double ConvertFromStlUnitsToUI(long value) const;
    double ConvertFromUIToStlUnitsSquare(double value) const;
    double ConvertFromStlUnitsSquareToUI(double value) const;
    double ConvertFromUIToStlUnitsCubed(double value) const;
    double ConvertFromStlUnitsCubedToUI(double value) const;
    ///@}

    /// Writes the length, given in millimetres or STL units, in the user unit ("%5.2g" for
    /// millimetres, "%5.3g" for inches) and, with `withUnit`, a blank and the abbreviation.
    /// The text is cut to fit `size` characters with its terminator; nothing is written when
    /// size is 0.
    ///@{
    void PrintMmInUI(wchar_t* buffer, size_t size, double mm, bool withUnit) const;
    void PrintStlUnitsInUI(wchar_t* buffer, size_t size, long stl, bool withUnit) const;
    ///@}

    /// The process-wide unit that GetInstance returns.
    static MUserUnit mg_user_unit;

protected:
    /// Tells every listener, in address order. A listener may add or remove listeners (itself
    /// included) from its notification; one removed before its turn is not called.
    void _OnUserUnitChanged();

private:
    double _ConvertFromUIToStlUnits(double value) const;
    double _ConvertFromStlUnitsToUI(double value) const;
    void _Print(wchar_t* buffer, size_t size, double valueInUnit, bool withUnit) const;

    UNIT_TYPE m_unit;
    std::wstring m_name;
    std::wstring m_abbreviation;
    std::set<IUserUnitDependent*> m_listeners;
    const wchar_t* m_printFormat;
    double m_mmPerUnit;
};

/// Hears of changes of the process-wide user unit for its whole life.
class KELBASE_API IUserUnitDependent {
public:
    /// Registers with MUserUnit::GetInstance().
    IUserUnitDependent();
    /// A copy is not registered (its destructor's removal is harmless).
    IUserUnitDependent(const IUserUnitDependent&);
    /// Leaves the registration of both objects as it is.
    IUserUnitDependent& operator=(const IUserUnitDependent&);
    virtual ~IUserUnitDependent();

    /// Called after the process-wide unit changed.
    virtual void OnUserUnitChanged() = 0;
};
