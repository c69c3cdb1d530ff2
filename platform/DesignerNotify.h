// How a form designer makes itself known to the components on its forms. Qt's parent chain runs past the
// form into the designer's own windows, so the owner chain ends at a form root that was declared here.
#pragma once

class QObject;

/// The designer of one form.
class IDesignerNotify {
public:
    /// Something on the form changed: it has to be saved.
    virtual void Modified() = 0;

protected:
    ~IDesignerNotify() = default;
};

/// Declares ARoot the root of a form under design. ANotify (not owned, may be null) hears of changes; it
/// must live until ARoot dies or ClearDesignRoot is called.
void SetDesignRoot(QObject* ARoot, IDesignerNotify* ANotify);
/// Takes back SetDesignRoot; harmless for any other object.
void ClearDesignRoot(QObject* ARoot);

/// The component's owner: its parent, or null for a form's root.
QObject* ComponentOwner(const QObject* AComponent);
/// Whether the component is, or stands on, a form under design.
bool IsDesigning(const QObject* AComponent);
/// What SetDesignRoot was given for ARoot; null for any other object.
IDesignerNotify* DesignerOfRoot(const QObject* ARoot);
