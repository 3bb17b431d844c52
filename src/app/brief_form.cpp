#include "app/brief_form.h"

namespace tamrin {

void ShowBriefly(Form& form, const Form& over) {
    const Place around = over.GetPlace();
    Place place = form.GetPlace();
    place.left = around.left + (around.width - place.width) / 2;
    place.top = around.top + (around.height - place.height) / 2;
    form.SetPlace(place);
    form.Find("Timer1").onTimer = [&form] { form.Close(); };
    form.SetTopMost(true);
    form.SetVisible(true);
}

}  // namespace tamrin
