-- The lookup lists that all organisations of an installation share, with their first rows: the
-- terms of ISO 12100:2010. Texts of this file hold no apostrophe: the forms paste a primary hazard
-- between apostrophes when they read its hazard types.
PRAGMA page_size = 4096;
PRAGMA journal_mode = DELETE;
PRAGMA application_id = 0x4B535458;
PRAGMA user_version = 1;

BEGIN;

CREATE TABLE Prjstage (
  hazopstage VARCHAR(255) NOT NULL DEFAULT '' CHECK(length(hazopstage) BETWEEN 1 AND 255)
);

CREATE TABLE PhaseMachLife (
  PhaseMachLife VARCHAR(255) NOT NULL DEFAULT '' CHECK(length(PhaseMachLife) BETWEEN 1 AND 255)
);

CREATE TABLE primaryhazard (
  hazardType VARCHAR(255) NOT NULL DEFAULT '' CHECK(length(hazardType) BETWEEN 1 AND 255),
  srno       INTEGER PRIMARY KEY AUTOINCREMENT
);

-- HazardTyp is the text of the primary hazard that the entry stands below. It is no reference: a
-- primary hazard that is deleted or renamed leaves its hazard types as they are.
CREATE TABLE HazardType (
  hazardoccurrence VARCHAR(255) NOT NULL DEFAULT '' CHECK(length(hazardoccurrence) BETWEEN 1 AND 255),
  HazardTyp        VARCHAR(255) NOT NULL DEFAULT '' CHECK(length(HazardTyp) <= 255),
  SrNo             INTEGER PRIMARY KEY AUTOINCREMENT
);
CREATE INDEX HazardType_of_primary ON HazardType (HazardTyp);

CREATE TABLE RecommTyp (
  RecommendationTyp VARCHAR(255) NOT NULL DEFAULT '' CHECK(length(RecommendationTyp) BETWEEN 1 AND 255)
);

CREATE TABLE ActionBy (
  ActnBy VARCHAR(255) NOT NULL DEFAULT '' CHECK(length(ActnBy) BETWEEN 1 AND 255)
);

INSERT INTO Prjstage (hazopstage) VALUES
  ('None.'),
  ('N.A.'),
  ('Concept'),
  ('Basic design'),
  ('Detailed design'),
  ('Procurement'),
  ('Manufacture and assembly'),
  ('Factory acceptance test'),
  ('Installation on site'),
  ('Commissioning'),
  ('Site acceptance test'),
  ('In use'),
  ('Modification or retrofit'),
  ('Relocation'),
  ('Review after an accident or near miss'),
  ('Periodic review'),
  ('Decommissioning');

INSERT INTO PhaseMachLife (PhaseMachLife) VALUES
  ('None.'),
  ('N.A.'),
  ('Transport'),
  ('Assembly and installation'),
  ('Commissioning'),
  ('Setting'),
  ('Teaching or programming'),
  ('Process changeover'),
  ('Start-up'),
  ('Operation'),
  ('Feeding and loading'),
  ('Unloading and removal of the product'),
  ('Stopping, also in an emergency'),
  ('Restart after an unscheduled stop'),
  ('Cleaning and housekeeping'),
  ('Inspection'),
  ('Preventive maintenance'),
  ('Corrective maintenance'),
  ('Fault-finding and troubleshooting'),
  ('Dismantling'),
  ('Disabling'),
  ('Scrapping');

INSERT INTO primaryhazard (hazardType) VALUES
  ('None.'),
  ('N.A.'),
  ('Mechanical hazards'),
  ('Electrical hazards'),
  ('Thermal hazards'),
  ('Noise hazards'),
  ('Vibration hazards'),
  ('Radiation hazards'),
  ('Material and substance hazards'),
  ('Ergonomic hazards'),
  ('Hazards of the environment in which the machine is used'),
  ('Combination of hazards');

INSERT INTO HazardType (HazardTyp, hazardoccurrence) VALUES
  ('None.', 'None.'),
  ('N.A.', 'N.A.'),

  ('Mechanical hazards', 'Crushing'),
  ('Mechanical hazards', 'Shearing'),
  ('Mechanical hazards', 'Cutting or severing'),
  ('Mechanical hazards', 'Entanglement'),
  ('Mechanical hazards', 'Drawing-in or trapping'),
  ('Mechanical hazards', 'Impact'),
  ('Mechanical hazards', 'Stabbing or puncture'),
  ('Mechanical hazards', 'Friction or abrasion'),
  ('Mechanical hazards', 'Injection of a fluid under high pressure'),
  ('Mechanical hazards', 'Slipping, tripping or falling'),
  ('Mechanical hazards', 'Being run over'),
  ('Mechanical hazards', 'Being thrown'),
  ('Mechanical hazards', 'Suffocation'),
  ('Mechanical hazards', 'Acceleration or deceleration, kinetic energy'),
  ('Mechanical hazards', 'Approach of a moving element to a fixed part'),
  ('Mechanical hazards', 'Rotating elements'),
  ('Mechanical hazards', 'Cutting parts, sharp edges, angular parts'),
  ('Mechanical hazards', 'Elastic elements and other stored energy'),
  ('Mechanical hazards', 'Falling or ejected objects'),
  ('Mechanical hazards', 'Gravity, loss of stability'),
  ('Mechanical hazards', 'Height from the ground'),
  ('Mechanical hazards', 'High pressure or vacuum'),
  ('Mechanical hazards', 'Mobility of the machinery'),
  ('Mechanical hazards', 'Rough or slippery surface'),

  ('Electrical hazards', 'Arc'),
  ('Electrical hazards', 'Electromagnetic phenomena'),
  ('Electrical hazards', 'Electrostatic phenomena'),
  ('Electrical hazards', 'Live parts'),
  ('Electrical hazards', 'Not enough distance to live parts under high voltage'),
  ('Electrical hazards', 'Overload'),
  ('Electrical hazards', 'Parts that have become live under fault conditions'),
  ('Electrical hazards', 'Short circuit'),
  ('Electrical hazards', 'Thermal radiation'),
  ('Electrical hazards', 'Effects on medical implants'),
  ('Electrical hazards', 'Projection of molten particles'),

  ('Thermal hazards', 'Explosion'),
  ('Thermal hazards', 'Flame'),
  ('Thermal hazards', 'Objects or materials with a high temperature'),
  ('Thermal hazards', 'Objects or materials with a low temperature'),
  ('Thermal hazards', 'Radiation from heat sources'),
  ('Thermal hazards', 'Burn or scald'),
  ('Thermal hazards', 'Frostbite'),
  ('Thermal hazards', 'Dehydration'),

  ('Noise hazards', 'Cavitation phenomena'),
  ('Noise hazards', 'Exhausting system'),
  ('Noise hazards', 'Gas leaking at high speed'),
  ('Noise hazards', 'Manufacturing process: stamping, cutting, and the like'),
  ('Noise hazards', 'Moving parts'),
  ('Noise hazards', 'Scraping surfaces'),
  ('Noise hazards', 'Unbalanced rotating parts'),
  ('Noise hazards', 'Whistling pneumatics'),
  ('Noise hazards', 'Worn parts'),
  ('Noise hazards', 'Permanent hearing loss or tinnitus'),
  ('Noise hazards', 'Interference with speech or acoustic signals'),

  ('Vibration hazards', 'Cavitation phenomena'),
  ('Vibration hazards', 'Misalignment of moving parts'),
  ('Vibration hazards', 'Mobile equipment'),
  ('Vibration hazards', 'Scraping surfaces'),
  ('Vibration hazards', 'Unbalanced rotating parts'),
  ('Vibration hazards', 'Vibrating equipment'),
  ('Vibration hazards', 'Worn parts'),
  ('Vibration hazards', 'Hand-arm vibration'),
  ('Vibration hazards', 'Whole-body vibration'),

  ('Radiation hazards', 'Ionizing radiation source'),
  ('Radiation hazards', 'Low-frequency electromagnetic radiation'),
  ('Radiation hazards', 'Radio-frequency electromagnetic radiation'),
  ('Radiation hazards', 'Infrared, visible or ultraviolet optical radiation'),
  ('Radiation hazards', 'Laser beam'),

  ('Material and substance hazards', 'Aerosol'),
  ('Material and substance hazards', 'Biological or microbiological agent'),
  ('Material and substance hazards', 'Combustible or flammable material'),
  ('Material and substance hazards', 'Dust'),
  ('Material and substance hazards', 'Explosive material'),
  ('Material and substance hazards', 'Fibre'),
  ('Material and substance hazards', 'Fluid'),
  ('Material and substance hazards', 'Fume'),
  ('Material and substance hazards', 'Gas'),
  ('Material and substance hazards', 'Mist'),
  ('Material and substance hazards', 'Oxidizer'),
  ('Material and substance hazards', 'Poisoning or sensitization'),
  ('Material and substance hazards', 'Corrosion'),

  ('Ergonomic hazards', 'Access'),
  ('Ergonomic hazards', 'Design or location of indicators and visual display units'),
  ('Ergonomic hazards', 'Design, location or identification of control devices'),
  ('Ergonomic hazards', 'Effort'),
  ('Ergonomic hazards', 'Flicker, dazzling, shadow or stroboscopic effect'),
  ('Ergonomic hazards', 'Local lighting'),
  ('Ergonomic hazards', 'Mental overload or underload'),
  ('Ergonomic hazards', 'Posture'),
  ('Ergonomic hazards', 'Repetitive activity'),
  ('Ergonomic hazards', 'Visibility'),

  ('Hazards of the environment in which the machine is used', 'Dust and fog'),
  ('Hazards of the environment in which the machine is used', 'Electromagnetic disturbance'),
  ('Hazards of the environment in which the machine is used', 'Lightning'),
  ('Hazards of the environment in which the machine is used', 'Moisture'),
  ('Hazards of the environment in which the machine is used', 'Pollution'),
  ('Hazards of the environment in which the machine is used', 'Snow'),
  ('Hazards of the environment in which the machine is used', 'Temperature'),
  ('Hazards of the environment in which the machine is used', 'Water'),
  ('Hazards of the environment in which the machine is used', 'Wind'),
  ('Hazards of the environment in which the machine is used', 'Lack of oxygen'),

  ('Combination of hazards', 'Repetitive activity with effort and high environmental temperature'),
  ('Combination of hazards', 'Awkward posture with effort in a confined space'),
  ('Combination of hazards', 'Noise that masks the warning of a moving part'),
  ('Combination of hazards', 'Slippery surface near an unguarded moving part'),
  ('Combination of hazards', 'Flammable atmosphere with an electrical or hot source of ignition');

-- In the order in which risk is to be reduced: by design, by safeguarding and complementary
-- measures, by information for use, and last by what the user of the machine adds.
INSERT INTO RecommTyp (RecommendationTyp) VALUES
  ('None.'),
  ('N.A.'),
  ('Inherently safe design: eliminate the hazard or the task'),
  ('Inherently safe design: geometry and physical aspects'),
  ('Inherently safe design: limit force, speed, mass or energy'),
  ('Inherently safe design: choice of technology or material'),
  ('Inherently safe design: stability and maintainability'),
  ('Inherently safe design: ergonomic principles'),
  ('Inherently safe design: control system and its reliability'),
  ('Inherently safe design: limit the exposure by mechanization or automation'),
  ('Safeguarding: fixed guard'),
  ('Safeguarding: movable guard with interlocking'),
  ('Safeguarding: movable guard with interlocking and guard locking'),
  ('Safeguarding: adjustable guard'),
  ('Safeguarding: sensitive protective equipment'),
  ('Safeguarding: two-hand control or enabling device'),
  ('Safeguarding: limiting device'),
  ('Safeguarding: reduction of emissions'),
  ('Complementary protective measure: emergency stop'),
  ('Complementary protective measure: escape and rescue of trapped persons'),
  ('Complementary protective measure: isolation and energy dissipation'),
  ('Complementary protective measure: handling of heavy parts'),
  ('Complementary protective measure: safe access'),
  ('Information for use: signals and warning devices'),
  ('Information for use: markings, signs and written warnings'),
  ('Information for use: instruction handbook'),
  ('Measure of the user: safe working procedure and supervision'),
  ('Measure of the user: permit to work'),
  ('Measure of the user: additional safeguard'),
  ('Measure of the user: personal protective equipment'),
  ('Measure of the user: training');

INSERT INTO ActionBy (ActnBy) VALUES
  ('None.'),
  ('N.A.'),
  ('Project manager'),
  ('Safety engineer'),
  ('Mechanical design'),
  ('Electrical design'),
  ('Control system design'),
  ('Hydraulics and pneumatics'),
  ('Manufacturing'),
  ('Purchasing'),
  ('Installation and commissioning'),
  ('Production manager'),
  ('Shift supervisor'),
  ('Machine operator'),
  ('Maintenance'),
  ('Quality assurance'),
  ('Technical documentation'),
  ('Training'),
  ('Health and safety committee'),
  ('Facility management'),
  ('Supplier'),
  ('Customer');

COMMIT;
